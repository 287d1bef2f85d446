// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/themes/Theme.h"

#include <QString>

namespace corvane::cli {

// A text as one field of a plain output line. What would break the line or the field, or what a
// terminal would act on instead of showing (ESC, BEL, NUL and every other control character), is
// written as an escape: \\ \n \r \t, \xHH for the other C0 controls and DEL, \u00HH for the C1
// controls, and \xHH for a byte of a file name that is not UTF-8. --json keeps the text exactly.
QString escapeField(const QString& text);

// A theme's style as theme files write it: "dark" or "light", in every language.
QString styleName(Theme::Style style);

} // namespace corvane::cli
