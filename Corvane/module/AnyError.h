// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QString>

#include <concepts>
#include <memory>
#include <typeinfo>
#include <utility>

namespace corvane {

// The text shown for an error that has no description of its own; it names the error's type.
CORVANE_EXPORT QString genericErrorDescription(const char* typeName, int code = 1);

template <class E>
concept DescribedError = requires(const E& e) {
    { e.errorDescription() } -> std::convertible_to<QString>;
};

template <class E>
concept NamedError = requires {
    { E::typeName } -> std::convertible_to<const char*>;
};

// The user-facing description of any error value: its own, or the generic text naming its type.
template <class E>
QString describeError(const E& error)
{
    if constexpr (DescribedError<E>)
        return error.errorDescription();
    else if constexpr (NamedError<E>)
        return genericErrorDescription(E::typeName);
    else
        return genericErrorDescription(typeid(E).name());
}

// Any error value, as the layers that wrap "some error" hold it. Copying shares the value.
class AnyError {
public:
    template <class E>
        requires(!std::same_as<std::remove_cvref_t<E>, AnyError>)
    AnyError(E error) // NOLINT: implicit by design, like the error values it carries
        : m_error(std::make_shared<Model<E>>(std::move(error)))
    {
    }

    QString errorDescription() const { return m_error->describe(); }

    // The wrapped value when it has type E, for callers that react to one kind of failure.
    template <class E>
    const E* as() const
    {
        auto model = dynamic_cast<const Model<E>*>(m_error.get());
        return model ? &model->value : nullptr;
    }

private:
    struct Concept {
        virtual ~Concept() = default;
        virtual QString describe() const = 0;
    };
    template <class E>
    struct Model final : Concept {
        explicit Model(E e) : value(std::move(e)) {}
        QString describe() const override { return describeError(value); }
        E value;
    };
    std::shared_ptr<const Concept> m_error;
};

} // namespace corvane
