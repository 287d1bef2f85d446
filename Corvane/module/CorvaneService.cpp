// SPDX-License-Identifier: MIT
#include "Corvane/module/CorvaneService.h"

#include "Corvane/module/AnswerOnce.h"
#include "Corvane/module/Dispatch.h"
#include "Corvane/sources/OID.h"
#include "Corvane/sources/RepositoryTimeOut.h"
#include "Corvane/sources/SynchronizedRepository.h"

namespace corvane {

ThemeRepositoryStatus CorvaneService::repositoryStatus(const std::optional<QString>& sinceCommit) const
{
    SynchronizedRepository synchronizedRepository(m_configuration);
    synchronizedRepository.reportProgressTo(m_progress);
    const auto commitId = flatMap(synchronizedRepository.synchronize(), [](Repository repository) {
        return flatMap(repository.HEAD(), [&](Reference head) {
            return map(repository.commit(head.oid()), [](Commit commit) { return commit.oid(); });
        });
    });
    if (!commitId)
        return RepositoryCheckFailure{commitId.error()};

    // Only equality counts: an abbreviated id, an ancestor or an unrelated commit is an update.
    if (sinceCommit) {
        if (const std::optional<OID> since = OID::fromString(*sinceCommit); since && *since == *commitId)
            return UpToDate{};
    }
    return UpdateAvailable{commitId->description()};
}

void CorvaneService::checkInBackground(std::optional<QString> sinceCommit, std::chrono::milliseconds timeLimit,
                                       std::function<void(ThemeRepositoryStatus)> result) const
{
    auto pending = std::make_shared<AnswerOnce<ThemeRepositoryStatus>>(std::move(result));
    dispatchBackground([service = std::optional(*this), sinceCommit = std::move(sinceCommit), pending]() mutable {
        ThemeRepositoryStatus status = service->repositoryStatus(sinceCommit);
        // The check is over: its copies go now, on this thread, so that nothing of it is left to this
        // thread once the answer is handed over (the host may be ending the process by then).
        service.reset();
        sinceCommit.reset();
        dispatchMain([pending = std::move(pending), status = std::move(status)]() mutable {
            pending->answer(std::move(status));
        });
    });
    AnswerOnce<ThemeRepositoryStatus>::limit(
        pending, timeLimit,
        RepositoryCheckFailure{repositoryTimeOut(m_configuration.remoteThemeRepositoryURL(), timeLimit)});
}

} // namespace corvane
