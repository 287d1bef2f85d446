// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QString>

namespace corvane {

// A failure of the git library, made once at its boundary from the return code and the library's last
// error. Its user-facing description is the library's own message.
class CORVANE_EXPORT GitError {
public:
    GitError(int code, int errorClass, QString message)
        : m_code(code), m_errorClass(errorClass), m_message(std::move(message))
    {
    }

    // The library's return code (negative) and error class, for hosts that react to one kind.
    int code() const { return m_code; }
    int errorClass() const { return m_errorClass; }
    const QString& message() const { return m_message; }

    QString errorDescription() const { return m_message; }

private:
    int m_code;
    int m_errorClass;
    QString m_message;
};

} // namespace corvane
