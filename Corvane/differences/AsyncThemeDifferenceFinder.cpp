#include "Corvane/differences/AsyncThemeDifferenceFinder.h"

#include "Corvane/module/Dispatch.h"
#include "Corvane/module/Localized.h"
#include "Corvane/sources/CredentialRedaction.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <git2/errors.h>

namespace corvane {
namespace {

// One call's answer. Both the comparison's result and the time limit reach it on the main thread
// only, so the first of the two wins without a lock and the other is dropped.
class PendingComparison {
public:
    explicit PendingComparison(std::function<void(ThemeDifferencesResult)> completion)
        : m_completion(std::move(completion))
    {
    }

    bool isAnswered() const { return m_answered; }

    void answer(ThemeDifferencesResult result)
    {
        if (m_answered)
            return;
        m_answered = true;
        if (m_limit) {
            // The timer's own connection holds this object; deleting it later frees both.
            m_limit->stop();
            m_limit->deleteLater();
            m_limit = nullptr;
        }
        auto completion = std::move(m_completion);
        m_completion = nullptr;
        completion(std::move(result));
    }

    static void startLimit(const std::shared_ptr<PendingComparison>& pending, std::chrono::milliseconds timeLimit,
                           ThemeDifferencesError timeOut)
    {
        if (pending->m_answered)
            return;
        // Parented to the application so that a timer still pending when it quits is freed with it.
        auto timer = new QTimer(QCoreApplication::instance());
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, timer, [pending, timeOut = std::move(timeOut)] {
            pending->answer(std::unexpected(timeOut));
        });
        pending->m_limit = timer;
        timer->start(timeLimit);
    }

private:
    std::function<void(ThemeDifferencesResult)> m_completion;
    QTimer* m_limit = nullptr;
    bool m_answered = false;
};

QString secondsText(std::chrono::milliseconds duration)
{
    return QString::number(static_cast<double>(duration.count()) / 1000.0);
}

} // namespace

AsyncThemeDifferenceFinder::AsyncThemeDifferenceFinder(std::shared_ptr<FindThemeDifferences> themeDifferenceFinder,
                                                       QUrl remoteRepositoryURL, std::chrono::milliseconds timeLimit)
    : m_themeDifferenceFinder(std::move(themeDifferenceFinder))
    , m_remoteRepositoryURL(std::move(remoteRepositoryURL))
    , m_timeLimit(timeLimit)
{
}

void AsyncThemeDifferenceFinder::findDifferences(std::function<void(ThemeDifferencesResult)> completion)
{
    auto pending = std::make_shared<PendingComparison>(std::move(completion));

    // The job holds the comparison (and through it both fetchers), not this object: this object
    // keeps nothing else the job needs, and a host may drop it the moment the call returns.
    dispatchUserInitiated([finder = m_themeDifferenceFinder, pending]() mutable {
        ThemeDifferencesResult result = finder->findDifferences();
        finder.reset(); // the comparison is over; its fetchers may go now, on this thread
        dispatchMain([pending = std::move(pending), result = std::move(result)]() mutable {
            pending->answer(std::move(result));
        });
    });

    auto startLimit = [pending, limit = m_timeLimit, timeOut = timeOutError(m_remoteRepositoryURL, m_timeLimit)] {
        PendingComparison::startLimit(pending, limit, timeOut);
    };
    // Timers belong to the main thread's event loop; a call from elsewhere starts its limit there.
    if (QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread())
        startLimit();
    else
        dispatchMain(std::move(startLimit));
}

ThemeDifferencesError AsyncThemeDifferenceFinder::timeOutError(const QUrl& remoteRepositoryURL,
                                                               std::chrono::milliseconds timeLimit)
{
    //% "The theme repository %@ did not answer within %@ seconds."
    const QString format = localizedString(QT_TRID_NOOP("corvane.comparison.time-out"),
                                           "The theme repository %@ did not answer within %@ seconds.");
    // Named as every git message names it: without user name or password.
    GitError error(GIT_ERROR, GIT_ERROR_NET,
                   fillPlaceholders(format, {displayUrl(remoteRepositoryURL), secondsText(timeLimit)}));
    return ThemeDifferencesError(ThemeDifferencesError::RemoteFetchingFailed{
        RemoteThemeFetchingError(RemoteThemeFetchingError::RepositoryError{std::move(error)})});
}

} // namespace corvane
