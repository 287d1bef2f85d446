// SPDX-License-Identifier: MIT
#include "Corvane/module/UpdatesThemes.h"

namespace corvane {

UpdatesThemes::UpdatesThemes(QObject* parent) : QObject(parent) {}

UpdatesThemes::~UpdatesThemes() = default;

} // namespace corvane
