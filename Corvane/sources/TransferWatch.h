// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitError.h"

#include <git2.h>
#include <git2/sys/transport.h>

#include <QString>
#include <QUrl>

#include <chrono>

namespace corvane {

// Watches one clone or fetch so that it never hangs: a transfer that makes no progress for the limit is
// aborted with a clear message. libgit2 1.5 has no socket time-out and a silent server fires no
// callback, so git:// goes through a socket of our own whose every wait is bounded (GitProtocolStream);
// the other transports are libgit2's own, watched from the progress callbacks. Nothing process-wide is
// changed. One watch serves one operation on one thread; it must outlive the operation.
class TransferWatch {
public:
    TransferWatch(QUrl remote, std::chrono::milliseconds limit);

    TransferWatch(const TransferWatch&) = delete;
    TransferWatch& operator=(const TransferWatch&) = delete;

    // Points the operation's callbacks (and its payload) at this watch.
    void install(git_remote_callbacks& callbacks);

    std::chrono::milliseconds limit() const { return m_limit; }
    const QUrl& remote() const { return m_remote; }

    // Called where a wait ran out: remembers it and leaves the time-out text as libgit2's last error.
    void reportTimeOut();
    bool timedOut() const { return m_timedOut; }

    // The error of the failed operation: the time-out text if the watch stopped it, libgit2's otherwise.
    GitError errorFor(int code) const;

    // "The transfer from <url> made no progress for <n> seconds."
    QString timeOutText() const;

private:
    using Clock = std::chrono::steady_clock;

    // Returns whether the transfer may go on.
    bool noteProgress(bool advanced);

    static int onTransferProgress(const git_indexer_progress* stats, void* payload);
    static int onSidebandProgress(const char* text, int length, void* payload);
    static int makeTransport(git_transport** out, git_remote* owner, void* payload);

    QUrl m_remote;
    std::chrono::milliseconds m_limit;
    Clock::time_point m_lastProgress;
    git_indexer_progress m_lastStats{};
    QByteArray m_lastSideband;
    bool m_timedOut = false;
    git_smart_subtransport_definition m_gitProtocol{};
};

} // namespace corvane
