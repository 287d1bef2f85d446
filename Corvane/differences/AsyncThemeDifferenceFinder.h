// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/FindThemeDifferences.h"
#include "Corvane/differences/FindsThemeDifferences.h"

#include <QUrl>

#include <chrono>
#include <memory>

namespace corvane {

// Runs the blocking comparison on the user-initiated pool and answers on the main thread, so the
// window never waits for git or the file system. Each call stands alone: it keeps the comparison and
// its fetchers alive until they are done, even when nothing else holds this object any more.
//
// A server that accepts the connection and then stays silent would keep a comparison running for
// ever, so every call also has a hard time limit: when it passes, the completion gets a repository
// failure saying the theme repository did not answer in time, and the comparison's late result is
// dropped. Either way the completion runs exactly once.
class AsyncThemeDifferenceFinder final : public FindsThemeDifferences {
public:
    static constexpr std::chrono::milliseconds defaultTimeLimit = std::chrono::minutes(5);

    // remoteRepositoryURL only names the repository in the time-out failure.
    AsyncThemeDifferenceFinder(std::shared_ptr<FindThemeDifferences> themeDifferenceFinder, QUrl remoteRepositoryURL,
                               std::chrono::milliseconds timeLimit = defaultTimeLimit);

    const std::shared_ptr<FindThemeDifferences>& themeDifferenceFinder() const { return m_themeDifferenceFinder; }
    std::chrono::milliseconds timeLimit() const { return m_timeLimit; }

    // Returns at once; the completion runs later on the main thread, never from within this call.
    void findDifferences(std::function<void(ThemeDifferencesResult)> completion) override;

    // What a comparison that ran past its limit answers with.
    static ThemeDifferencesError timeOutError(const QUrl& remoteRepositoryURL, std::chrono::milliseconds timeLimit);

private:
    std::shared_ptr<FindThemeDifferences> m_themeDifferenceFinder;
    QUrl m_remoteRepositoryURL;
    std::chrono::milliseconds m_timeLimit;
};

} // namespace corvane
