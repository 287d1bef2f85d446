// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/NewTheme.h"
#include "Corvane/differences/UpdatedTheme.h"

#include <variant>

namespace corvane {

// One row of what the repository offers: a new theme or an update of an installed one.
using ThemeDifference = std::variant<NewTheme, UpdatedTheme>;

} // namespace corvane
