#include "Corvane/module/CorvaneModule.h"

#include "Corvane/module/CorvaneService.h"
#include "Corvane/module/CorvaneWireframe.h"
#include "Corvane/module/Dispatch.h"

namespace corvane {

void CorvaneModule::hasUpdates(std::optional<QString> sinceCommit,
                               std::function<void(ThemeRepositoryStatus)> result) const
{
    dispatchBackground([configuration = m_configuration, sinceCommit = std::move(sinceCommit),
                        result = std::move(result)]() mutable {
        ThemeRepositoryStatus status = CorvaneService(configuration).repositoryStatus(sinceCommit);
        dispatchMain([result = std::move(result), status = std::move(status)] { result(status); });
    });
}

std::unique_ptr<UpdatesThemes> CorvaneModule::corvane() const
{
    return CorvaneWireframe::create(m_configuration);
}

} // namespace corvane
