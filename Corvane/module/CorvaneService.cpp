#include "Corvane/module/CorvaneService.h"

namespace corvane {

// Placeholder until the git layer lands.
ThemeRepositoryStatus CorvaneService::repositoryStatus(const std::optional<QString>&) const
{
    return RepositoryCheckFailure{GitError(-1, 0, QStringLiteral("not implemented"))};
}

} // namespace corvane
