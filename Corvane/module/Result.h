// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <type_traits>
#include <utility>

namespace corvane {

// Success or a typed failure. The standard library of our compiler has std::expected but not its
// monadic members, so the few combinators the layers chain with live here, once.
template <class T, class E>
using Result = std::expected<T, E>;

// Changes the success value; a failure passes unchanged.
template <class T, class E, class F>
auto map(Result<T, E> result, F&& transform) -> Result<std::invoke_result_t<F, T&&>, E>
{
    if (!result)
        return std::unexpected(std::move(result.error()));
    return std::forward<F>(transform)(std::move(*result));
}

// Runs the next fallible step on success; the first failure wins.
template <class T, class E, class F>
auto flatMap(Result<T, E> result, F&& next) -> std::invoke_result_t<F, T&&>
{
    if (!result)
        return std::unexpected(std::move(result.error()));
    return std::forward<F>(next)(std::move(*result));
}

// Wraps the failure in the caller's error type; a success passes unchanged.
template <class T, class E, class F>
auto mapError(Result<T, E> result, F&& wrap) -> Result<T, std::invoke_result_t<F, E&&>>
{
    if (!result)
        return std::unexpected(std::forward<F>(wrap)(std::move(result.error())));
    return std::move(*result);
}

// Changes both sides at once.
template <class T, class E, class F, class G>
auto bimap(Result<T, E> result, F&& transform, G&& wrap)
    -> Result<std::invoke_result_t<F, T&&>, std::invoke_result_t<G, E&&>>
{
    if (!result)
        return std::unexpected(std::forward<G>(wrap)(std::move(result.error())));
    return std::forward<F>(transform)(std::move(*result));
}

// Pairs two results; the second is evaluated only when the first succeeded.
template <class T, class E, class F>
auto fanout(Result<T, E> first, F&& second)
    -> Result<std::pair<T, typename std::invoke_result_t<F>::value_type>, E>
{
    if (!first)
        return std::unexpected(std::move(first.error()));
    auto other = std::forward<F>(second)();
    if (!other)
        return std::unexpected(std::move(other.error()));
    return std::pair{std::move(*first), std::move(*other)};
}

} // namespace corvane
