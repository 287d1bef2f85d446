// SPDX-License-Identifier: MIT
#include "Corvane/module/UpdatesThemes.h"

namespace corvane {

UpdatesThemes::~UpdatesThemes() = default;

} // namespace corvane
