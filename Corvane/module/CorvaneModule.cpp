// SPDX-License-Identifier: MIT
#include "Corvane/module/CorvaneModule.h"

#include "Corvane/module/CorvaneService.h"
#include "Corvane/module/CorvaneWireframe.h"

namespace corvane {

void CorvaneModule::hasUpdates(std::optional<QString> sinceCommit,
                               std::function<void(ThemeRepositoryStatus)> result) const
{
    CorvaneService(m_configuration).checkInBackground(std::move(sinceCommit), CorvaneService::defaultTimeLimit,
                                                      std::move(result));
}

std::unique_ptr<UpdatesThemes> CorvaneModule::corvane() const
{
    return CorvaneWireframe::create(m_configuration);
}

} // namespace corvane
