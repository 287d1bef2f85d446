// SPDX-License-Identifier: MIT
#include "Corvane/differences/AsyncThemeDifferenceFinder.h"

#include "Corvane/module/AnswerOnce.h"
#include "Corvane/module/Dispatch.h"
#include "Corvane/sources/RepositoryTimeOut.h"

namespace corvane {

AsyncThemeDifferenceFinder::AsyncThemeDifferenceFinder(std::shared_ptr<FindThemeDifferences> themeDifferenceFinder,
                                                       QUrl remoteRepositoryURL, std::chrono::milliseconds timeLimit)
    : m_themeDifferenceFinder(std::move(themeDifferenceFinder))
    , m_remoteRepositoryURL(std::move(remoteRepositoryURL))
    , m_timeLimit(timeLimit)
{
}

void AsyncThemeDifferenceFinder::findDifferences(std::function<void(ThemeDifferencesResult)> completion)
{
    auto pending = std::make_shared<AnswerOnce<ThemeDifferencesResult>>(std::move(completion));

    // The job holds the comparison (and through it both fetchers), not this object: this object
    // keeps nothing else the job needs, and a host may drop it the moment the call returns.
    dispatchUserInitiated([finder = m_themeDifferenceFinder, pending]() mutable {
        ThemeDifferencesResult result = finder->findDifferences();
        finder.reset(); // the comparison is over; its fetchers may go now, on this thread
        dispatchMain([pending = std::move(pending), result = std::move(result)]() mutable {
            pending->answer(std::move(result));
        });
    });
    AnswerOnce<ThemeDifferencesResult>::limit(pending, m_timeLimit,
                                              std::unexpected(timeOutError(m_remoteRepositoryURL, m_timeLimit)));
}

ThemeDifferencesError AsyncThemeDifferenceFinder::timeOutError(const QUrl& remoteRepositoryURL,
                                                               std::chrono::milliseconds timeLimit)
{
    return ThemeDifferencesError(ThemeDifferencesError::RemoteFetchingFailed{RemoteThemeFetchingError(
        RemoteThemeFetchingError::RepositoryError{repositoryTimeOut(remoteRepositoryURL, timeLimit)})});
}

} // namespace corvane
