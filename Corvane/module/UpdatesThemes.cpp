// SPDX-License-Identifier: MIT
#include "Corvane/module/UpdatesThemes.h"

namespace corvane {

UpdatesThemes::UpdatesThemes(QObject* parent) : QObject(parent) {}

UpdatesThemes::~UpdatesThemes() = default;

void UpdatesThemes::setPreviewProvider(std::shared_ptr<ProvidesThemePreviews> provider)
{
    Q_UNUSED(provider) // an updater without rows has nowhere to show previews
}

} // namespace corvane
