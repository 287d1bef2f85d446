// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitError.h"
#include "Corvane/sources/RemoteAuthentication.h"
#include "Corvane/sources/SynchronizationProgress.h"
#include "Corvane/sources/TransferLimits.h"

#include <git2.h>
#include <git2/sys/transport.h>

#include <QString>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace corvane {

// Watches one clone or fetch so that it never hangs, whatever the transport: connecting, the server's
// first byte and every later sign of progress each have their limit (TransferLimits), and a transfer
// that overruns one is stopped with a text naming what timed out.
//
// libgit2 1.5 has no socket time-out and a silent server fires no callback, so the watch keeps its own
// clock on a thread of its own. The transports report every byte they move: git://, and plain http
// through a proxy, go through sockets of our own (GitProtocolSubtransport, ProxiedHttpSubtransport);
// http, https and ssh otherwise through libgit2's own subtransports wrapped to count
// (WatchedSubtransport), all chosen for this one operation through its transport callback. When a limit
// passes, the watch marks the transfer as timed out (callbacks then stop it) and shuts down the sockets
// the operation's thread is blocked on (BlockedSocketBreaker). Nothing process-wide is changed. One
// watch serves one operation, on the thread that made it; it must outlive the operation.
class TransferWatch {
public:
    enum class Stage {
        connecting,    // reaching the server (address lookup, connection)
        awaitingReply, // connected, nothing received yet
        transferring,  // something received; each pause counts against the no-progress limit
    };

    TransferWatch(QUrl remote, TransferLimits limits);
    ~TransferWatch();

    TransferWatch(const TransferWatch&) = delete;
    TransferWatch& operator=(const TransferWatch&) = delete;

    // Points the operation's callbacks (and its payload) at this watch and starts the clock. Credential
    // and certificate questions go to authentication, which must outlive the operation too.
    void install(git_remote_callbacks& callbacks, RemoteAuthentication* authentication = nullptr);

    // Objects received and deltas resolved go to progress as well (which must outlive the operation).
    void reportProgressTo(const ReportsSynchronizationProgress* progress) { m_progress = progress; }

    const TransferLimits& limits() const { return m_limits; }
    // Looks up the proxy for the remote (HttpProxyLookup) and points options at it: https goes through
    // libgit2's own tunnel, plain http through ProxiedHttpSubtransport. For a clone, repository is null.
    void routeThroughProxy(git_proxy_options& options, git_repository* repository = nullptr,
                           const QByteArray& remoteName = {});
    // The proxy a plain http transfer goes through; empty: none.
    const QUrl& httpProxy() const { return m_httpProxy; }
    const QUrl& remote() const { return m_remote; }

    // From the transports, on the operation's thread.
    void noteConnecting();
    void noteConnected();
    void noteSent();
    void noteReceived();
    // A local transport: no connection, every pause counts as one without progress.
    void noteLocal();

    bool timedOut() const { return m_timedOut.load(); }
    // How often a transport that waits itself should look at timedOut().
    std::chrono::milliseconds pollInterval() const { return m_tick; }
    // Leaves the time-out text as libgit2's last error; for transports that notice timedOut().
    void reportTimeOut() const;

    // The error of the failed operation: the time-out text if the watch stopped it, libgit2's otherwise.
    GitError errorFor(int code) const;

    // Names the stage that timed out, for example "The transfer from <url> made no progress for 60 seconds."
    QString timeOutText() const;

private:
    using Clock = std::chrono::steady_clock;

    void markActivity();
    // Returns whether the transfer may go on.
    bool mayContinue(bool advanced);
    void watchOver();
    std::chrono::milliseconds limitFor(Stage stage) const;

    static int onTransferProgress(const git_indexer_progress* stats, void* payload);
    static int onSidebandProgress(const char* text, int length, void* payload);
    static int makeTransport(git_transport** out, git_remote* owner, void* payload);
    static int onCredentials(git_credential** out, const char* url, const char* userFromUrl, unsigned int allowedTypes,
                             void* payload);
    static int onCertificate(git_cert* certificate, int valid, const char* host, void* payload);

    QUrl m_remote;
    TransferLimits m_limits;
    RemoteAuthentication* m_authentication = nullptr;
    const ReportsSynchronizationProgress* m_progress = nullptr;
    std::chrono::milliseconds m_tick;
    pid_t m_thread = 0;

    std::atomic<Clock::rep> m_lastActivity;
    std::atomic<bool> m_connecting{false};
    std::atomic<bool> m_received{false};
    std::atomic<bool> m_timedOut{false};
    std::atomic<bool> m_askingHost{false};
    std::atomic<Stage> m_timedOutStage{Stage::transferring};

    git_indexer_progress m_lastStats{};
    QByteArray m_lastSideband;
    git_smart_subtransport_definition m_gitProtocol{};
    git_smart_subtransport_definition m_http{};
    git_smart_subtransport_definition m_proxiedHttp{};
    QUrl m_httpProxy;
    QByteArray m_httpsProxy; // what libgit2's options point at
    git_smart_subtransport_definition m_ssh{};

    std::mutex m_mutex;
    std::condition_variable m_stop;
    bool m_stopping = false;
    std::thread m_watcher;
};

} // namespace corvane
