// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/themes/Theme.h"

#include <QString>

namespace corvane {

// The word shown to the user for a theme's style, in the host's language ("Light", "Dark" in English).
// Looked up each time, so rows follow the language in force when they are built.
QString styleLabel(Theme::Style style);

} // namespace corvane
