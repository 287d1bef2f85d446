// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/LocalThemeFetchingError.h"
#include "Corvane/sources/RemoteThemeFetchingError.h"

#include <variant>

namespace corvane {

// Why a comparison of remote and installed themes failed.
class ThemeDifferencesError {
public:
    struct RemoteFetchingFailed {
        RemoteThemeFetchingError error;
    };
    struct LocalFetchingFailed {
        LocalThemeFetchingError error;
    };

    ThemeDifferencesError(RemoteFetchingFailed reason) : m_reason(std::move(reason)) {}
    ThemeDifferencesError(LocalFetchingFailed reason) : m_reason(std::move(reason)) {}

    const std::variant<RemoteFetchingFailed, LocalFetchingFailed>& reason() const { return m_reason; }

    // "Computing theme differences failed: " and the fetcher's description.
    QString errorDescription() const;

private:
    std::variant<RemoteFetchingFailed, LocalFetchingFailed> m_reason;
};

} // namespace corvane
