// SPDX-License-Identifier: MIT
#include "Corvane/module/CorvaneModule.h"

#include "Corvane/module/RepositoryCheckState.h"

#include "Corvane/module/CorvaneService.h"

namespace corvane {

void CorvaneModule::hasUpdates(std::optional<QString> sinceCommit,
                               std::function<void(ThemeRepositoryStatus)> result) const
{
    CorvaneService(m_configuration).checkInBackground(std::move(sinceCommit), CorvaneService::defaultTimeLimit,
                                                      std::move(result));
}

RepositoryCheckHandle CorvaneModule::hasUpdates(std::optional<QString> sinceCommit, const QObject* context,
                                                std::function<void(ThemeRepositoryStatus)> result) const
{
    auto state = std::make_shared<RepositoryCheckHandle::State>();
    state->context = context;
    state->hasContext = context != nullptr;
    hasUpdates(std::move(sinceCommit), [state, result = std::move(result)](ThemeRepositoryStatus status) {
        if (state->cancelled || (state->hasContext && !state->context))
            return;
        state->answered = true;
        result(std::move(status));
    });
    return RepositoryCheckHandle(std::move(state));
}

Result<UndoneInstall, TextError> CorvaneModule::undoLastInstall() const
{
    return corvane::undoLastInstall(m_configuration.installedThemeDirectory());
}

} // namespace corvane
