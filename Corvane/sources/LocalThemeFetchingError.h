// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/AnyError.h"
#include "Corvane/themes/ThemeDecodingError.h"

#include <variant>

namespace corvane {

// Why the installed themes could not be had.
class LocalThemeFetchingError {
public:
    // The installed-themes directory could not be created.
    struct FileError {
        AnyError error;
    };
    // The installed-themes directory could not be read.
    struct DecodingError {
        ThemeDecodingError error;
    };

    LocalThemeFetchingError(FileError reason) : m_reason(std::move(reason)) {}
    LocalThemeFetchingError(DecodingError reason) : m_reason(std::move(reason)) {}

    const std::variant<FileError, DecodingError>& reason() const { return m_reason; }

    // "Local theme fetching error: " and the case text.
    QString errorDescription() const;

private:
    std::variant<FileError, DecodingError> m_reason;
};

} // namespace corvane
