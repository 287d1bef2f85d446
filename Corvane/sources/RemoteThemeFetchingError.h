// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitError.h"
#include "Corvane/themes/ThemeDecodingError.h"

#include <variant>

namespace corvane {

// Why the remote themes could not be had.
class RemoteThemeFetchingError {
public:
    // Synchronising the local clone failed.
    struct RepositoryError {
        GitError error;
    };
    // The clone has no working directory, or its "Themes" directory could not be read.
    struct ThemeDecodingFailed {
        ThemeDecodingError error;
    };

    RemoteThemeFetchingError(RepositoryError reason) : m_reason(std::move(reason)) {}
    RemoteThemeFetchingError(ThemeDecodingFailed reason) : m_reason(std::move(reason)) {}

    const std::variant<RepositoryError, ThemeDecodingFailed>& reason() const { return m_reason; }

    // "Remote theme fetching error: " and the case text.
    QString errorDescription() const;

private:
    std::variant<RepositoryError, ThemeDecodingFailed> m_reason;
};

} // namespace corvane
