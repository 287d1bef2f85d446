// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/AnyError.h"

#include <QUrl>

#include <variant>

namespace corvane {

// Why one theme file could not be turned into a theme.
class JSONDecodingError {
public:
    // The file could not be read; the platform's reason.
    struct DataReadingFailed {
        QUrl url;
        AnyError error;
    };
    // The content is not a valid theme; the decoding error (JSON fault, style check or version).
    struct JSONDecodingFailed {
        QUrl url;
        AnyError error;
    };

    JSONDecodingError(DataReadingFailed reason) : m_reason(std::move(reason)) {}
    JSONDecodingError(JSONDecodingFailed reason) : m_reason(std::move(reason)) {}

    const std::variant<DataReadingFailed, JSONDecodingFailed>& reason() const { return m_reason; }

    // "Could not decode JSON, " and the case text, which names the file's path.
    QString errorDescription() const;

private:
    std::variant<DataReadingFailed, JSONDecodingFailed> m_reason;
};

} // namespace corvane
