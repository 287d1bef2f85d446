// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QString>

namespace corvane {

// Plain text that serves as an error; its user-facing description is the text itself.
struct CORVANE_EXPORT TextError {
    QString text;

    QString errorDescription() const { return text; }
};

} // namespace corvane
