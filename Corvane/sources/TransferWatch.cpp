// SPDX-License-Identifier: MIT
#include "Corvane/sources/TransferWatch.h"

#include "Corvane/module/Localized.h"
#include "Corvane/sources/CredentialRedaction.h"
#include "Corvane/sources/GitLibrary.h"
#include "Corvane/sources/GitProtocolSubtransport.h"

#include <cstring>

namespace corvane {

TransferWatch::TransferWatch(QUrl remote, std::chrono::milliseconds limit)
    : m_remote(std::move(remote)), m_limit(limit), m_lastProgress(Clock::now())
{
    m_gitProtocol.callback = GitProtocolSubtransport::create;
    m_gitProtocol.rpc = 0;
    m_gitProtocol.param = this;
}

void TransferWatch::install(git_remote_callbacks& callbacks)
{
    callbacks.payload = this;
    callbacks.transfer_progress = onTransferProgress;
    callbacks.sideband_progress = onSidebandProgress;
    callbacks.transport = makeTransport;
}

void TransferWatch::reportTimeOut()
{
    m_timedOut = true;
    git_error_set_str(GIT_ERROR_NET, timeOutText().toUtf8().constData());
}

QString TransferWatch::timeOutText() const
{
    //% "The transfer from %@ made no progress for %@ seconds."
    const QString format = localizedString(QT_TRID_NOOP("corvane.git.no-progress"),
                                           "The transfer from %@ made no progress for %@ seconds.");
    return fillPlaceholders(format, {displayUrl(m_remote), QString::number(double(m_limit.count()) / 1000.0)});
}

GitError TransferWatch::errorFor(int code) const
{
    if (m_timedOut) {
        git_error_clear();
        return GitError(code, GIT_ERROR_NET, timeOutText());
    }
    return makeGitError(code, m_remote);
}

bool TransferWatch::noteProgress(bool advanced)
{
    const Clock::time_point now = Clock::now();
    if (advanced) {
        m_lastProgress = now;
        return true;
    }
    if (now - m_lastProgress < m_limit)
        return true;
    reportTimeOut();
    return false;
}

int TransferWatch::onTransferProgress(const git_indexer_progress* stats, void* payload)
{
    auto watch = static_cast<TransferWatch*>(payload);
    const git_indexer_progress& last = watch->m_lastStats;
    const bool advanced = stats->received_bytes != last.received_bytes
        || stats->received_objects != last.received_objects || stats->indexed_objects != last.indexed_objects
        || stats->indexed_deltas != last.indexed_deltas || stats->local_objects != last.local_objects;
    watch->m_lastStats = *stats;
    return watch->noteProgress(advanced) ? 0 : -1;
}

int TransferWatch::onSidebandProgress(const char* text, int length, void* payload)
{
    // A server that only repeats the same message is not getting anywhere.
    auto watch = static_cast<TransferWatch*>(payload);
    const QByteArray message(text, length);
    const bool advanced = message != watch->m_lastSideband;
    watch->m_lastSideband = message;
    return watch->noteProgress(advanced) ? 0 : -1;
}

int TransferWatch::makeTransport(git_transport** out, git_remote* owner, void* payload)
{
    auto watch = static_cast<TransferWatch*>(payload);
    const char* url = git_remote_url(owner);
    if (GitProtocolSubtransport::isAvailable() && url && std::strncmp(url, "git://", 6) == 0)
        return git_transport_smart(out, owner, &watch->m_gitProtocol);
    return git_transport_new(out, owner, url);
}

} // namespace corvane
