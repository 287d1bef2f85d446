// SPDX-License-Identifier: MIT
#include "Corvane/sources/TransferWatch.h"

#include "Corvane/module/Localized.h"
#include "Corvane/sources/BlockedSocketBreaker.h"
#include "Corvane/sources/CloneLock.h"
#include "Corvane/sources/CredentialRedaction.h"
#include "Corvane/sources/GitLibrary.h"
#include "Corvane/sources/GitProtocolSubtransport.h"
#include "Corvane/sources/HttpProxyLookup.h"
#include "Corvane/sources/ProxiedHttpSubtransport.h"
#include "Corvane/sources/WatchedSubtransport.h"

#include <QFile>

#include <algorithm>
#include <cstring>

namespace corvane {
namespace {

bool hasPrefix(const char* url, const char* prefix)
{
    return std::strncmp(url, prefix, std::strlen(prefix)) == 0;
}

// libgit2's own rule: an explicit ssh scheme, or "[user@]host:path" with no scheme at all.
bool isSsh(const char* url)
{
    if (hasPrefix(url, "ssh://") || hasPrefix(url, "ssh+git://") || hasPrefix(url, "git+ssh://"))
        return true;
    if (std::strstr(url, "://"))
        return false;
    const char* colon = std::strchr(url, ':');
    const char* slash = std::strchr(url, '/');
    return colon && colon != url && (!slash || colon < slash);
}

double seconds(std::chrono::milliseconds limit)
{
    return double(limit.count()) / 1000.0;
}

// Deltas are resolved once every object is in; until then the objects received are the news.
SynchronizationProgress progressOf(const git_indexer_progress& stats)
{
    using Stage = SynchronizationProgress::Stage;
    if (stats.total_deltas > 0 && stats.received_objects == stats.total_objects)
        return {Stage::resolving, qsizetype(stats.indexed_deltas), qsizetype(stats.total_deltas), 0};
    return {Stage::receiving, qsizetype(stats.received_objects), qsizetype(stats.total_objects),
            qint64(stats.received_bytes)};
}

} // namespace

TransferWatch::TransferWatch(QUrl remote, TransferLimits limits)
    : m_remote(std::move(remote)),
      m_limits(limits),
      m_tick(std::clamp(limits.shortest() / 20, std::chrono::milliseconds(10), std::chrono::milliseconds(500))),
      m_thread(BlockedSocketBreaker::currentThread()),
      m_lastActivity(Clock::now().time_since_epoch().count())
{
    m_gitProtocol = {GitProtocolSubtransport::create, 0, this};
    m_http = {WatchedSubtransport::createHttp, 1, this};
    m_proxiedHttp = {ProxiedHttpSubtransport::create, 1, this};
    m_ssh = {WatchedSubtransport::createSsh, 0, this};
}

TransferWatch::~TransferWatch()
{
    {
        std::lock_guard guard(m_mutex);
        m_stopping = true;
    }
    m_stop.notify_all();
    if (m_watcher.joinable())
        m_watcher.join();
}

void TransferWatch::install(git_remote_callbacks& callbacks, RemoteAuthentication* authentication)
{
    callbacks.payload = this;
    m_authentication = authentication;
    if (authentication) {
        callbacks.credentials = onCredentials;
        callbacks.certificate_check = onCertificate;
    }
    callbacks.transfer_progress = onTransferProgress;
    callbacks.sideband_progress = onSidebandProgress;
    callbacks.transport = makeTransport;
    markActivity();
    if (!m_watcher.joinable())
        m_watcher = std::thread([this] { watchOver(); });
}

void TransferWatch::routeThroughProxy(git_proxy_options& options, git_repository* repository,
                                      const QByteArray& remoteName)
{
    // One lookup for both schemes, so that both read the same settings the same way; libgit2's own
    // would connect to plain http directly and takes an empty setting for a malformed proxy.
    options.type = GIT_PROXY_NONE;
    const bool https = m_remote.scheme() == QLatin1String("https");
    if (!https && m_remote.scheme() != QLatin1String("http"))
        return; // ssh, git:// and local remotes never use a proxy: no configuration to read
    const std::optional<QUrl> proxy = HttpProxyLookup::forRemote(repository, remoteName, m_remote);
    if (!proxy)
        return;
    if (!https && ProxiedHttpSubtransport::isAvailable()) {
        m_httpProxy = *proxy;
        return;
    }
    // libgit2's own tunnel for https; for plain http where our transport is missing, all there is.
    m_httpsProxy = proxy->toEncoded();
    options.type = GIT_PROXY_SPECIFIED;
    options.url = m_httpsProxy.constData();
}

void TransferWatch::markActivity()
{
    m_lastActivity.store(Clock::now().time_since_epoch().count());
    CloneLock::signOfLifeOnThisThread();
}

void TransferWatch::noteConnecting()
{
    m_connecting = true;
    markActivity();
}

void TransferWatch::noteConnected()
{
    m_connecting = false;
    markActivity();
}

void TransferWatch::noteSent()
{
    markActivity();
}

void TransferWatch::noteReceived()
{
    m_received = true;
    markActivity();
}

void TransferWatch::noteLocal()
{
    m_received = true;
}

std::chrono::milliseconds TransferWatch::limitFor(Stage stage) const
{
    switch (stage) {
    case Stage::connecting:
        return m_limits.connect;
    case Stage::awaitingReply:
        return m_limits.firstByte;
    case Stage::transferring:
        break;
    }
    return m_limits.noProgress;
}

void TransferWatch::watchOver()
{
    std::unique_lock guard(m_mutex);
    while (!m_stop.wait_for(guard, m_tick, [this] { return m_stopping; })) {
        if (m_timedOut) {
            // Keep ending the operation's waits until libgit2 gives up and the operation returns.
            BlockedSocketBreaker::inspect(m_thread, true);
            continue;
        }
        const auto idle = Clock::now() - Clock::time_point(Clock::duration(m_lastActivity.load()));
        if (m_askingHost || idle < m_limits.shortest())
            continue;
        Stage stage = Stage::transferring;
        if (!m_received) {
            const BlockedSocketBreaker::Wait wait = BlockedSocketBreaker::inspect(m_thread, false);
            stage = m_connecting || wait.connecting ? Stage::connecting : Stage::awaitingReply;
        }
        if (idle < limitFor(stage))
            continue;
        m_timedOutStage = stage;
        m_timedOut = true;
        BlockedSocketBreaker::inspect(m_thread, true);
    }
}

void TransferWatch::reportTimeOut() const
{
    git_error_set_str(GIT_ERROR_NET, timeOutText().toUtf8().constData());
}

QString TransferWatch::timeOutText() const
{
    const Stage stage = m_timedOutStage.load();
    const double limit = seconds(limitFor(stage));
    QString format;
    switch (stage) {
    case Stage::connecting:
        //% "Could not connect to %1 within %2 seconds."
        format = localizedCountedString(QT_TRID_N_NOOP("corvane.git.connect-time-out"), limit,
                                        "Could not connect to %1 within %2 second.",
                                        "Could not connect to %1 within %2 seconds.");
        break;
    case Stage::awaitingReply:
        //% "The server of %1 accepted the connection but sent nothing for %2 seconds."
        format = localizedCountedString(QT_TRID_N_NOOP("corvane.git.first-byte-time-out"), limit,
                                        "The server of %1 accepted the connection but sent nothing for %2 second.",
                                        "The server of %1 accepted the connection but sent nothing for %2 seconds.");
        break;
    case Stage::transferring:
        //% "The transfer from %1 made no progress for %2 seconds."
        format = localizedCountedString(QT_TRID_N_NOOP("corvane.git.no-progress"), limit,
                                        "The transfer from %1 made no progress for %2 second.",
                                        "The transfer from %1 made no progress for %2 seconds.");
        break;
    }
    return fillPlaceholders(format, {displayUrl(m_remote), localizedNumber(limit)});
}

GitError TransferWatch::errorFor(int code) const
{
    if (m_timedOut) {
        git_error_clear();
        return GitError(code, GIT_ERROR_NET, timeOutText());
    }
    return makeGitError(code, m_remote);
}

bool TransferWatch::mayContinue(bool advanced)
{
    if (m_timedOut) {
        reportTimeOut();
        return false;
    }
    if (advanced)
        noteReceived();
    return true;
}

int TransferWatch::onTransferProgress(const git_indexer_progress* stats, void* payload)
{
    auto watch = static_cast<TransferWatch*>(payload);
    const git_indexer_progress& last = watch->m_lastStats;
    const bool advanced = stats->received_bytes != last.received_bytes
        || stats->received_objects != last.received_objects || stats->indexed_objects != last.indexed_objects
        || stats->indexed_deltas != last.indexed_deltas || stats->local_objects != last.local_objects;
    watch->m_lastStats = *stats;
    if (watch->m_progress && *watch->m_progress && stats->total_objects > 0)
        (*watch->m_progress)(progressOf(*stats));
    return watch->mayContinue(advanced) ? 0 : -1;
}

int TransferWatch::onSidebandProgress(const char* text, int length, void* payload)
{
    // A server that only repeats the same message is not getting anywhere.
    auto watch = static_cast<TransferWatch*>(payload);
    const QByteArray message(text, length);
    const bool advanced = message != watch->m_lastSideband;
    watch->m_lastSideband = message;
    return watch->mayContinue(advanced) ? 0 : -1;
}

int TransferWatch::onCredentials(git_credential** out, const char* url, const char* userFromUrl,
                                 unsigned int allowedTypes, void* payload)
{
    auto watch = static_cast<TransferWatch*>(payload);
    // Waiting for the host (a password prompt, a credential helper) is not a stalled transfer.
    watch->m_askingHost = true;
    const int answer = watch->m_authentication->credentials(out, url, userFromUrl, allowedTypes);
    watch->markActivity();
    watch->m_askingHost = false;
    return answer;
}

int TransferWatch::onCertificate(git_cert* certificate, int valid, const char* host, void* payload)
{
    auto watch = static_cast<TransferWatch*>(payload);
    watch->m_askingHost = true;
    const int answer = watch->m_authentication->certificate(certificate, valid, host);
    watch->markActivity();
    watch->m_askingHost = false;
    return answer;
}

int TransferWatch::makeTransport(git_transport** out, git_remote* owner, void* payload)
{
    auto watch = static_cast<TransferWatch*>(payload);
    const char* url = git_remote_url(owner);
    if (!url)
        return git_transport_new(out, owner, "");
    if (hasPrefix(url, "git://") && GitProtocolSubtransport::isAvailable())
        return git_transport_smart(out, owner, &watch->m_gitProtocol);
    if (hasPrefix(url, "http://") && !watch->m_httpProxy.isEmpty())
        return git_transport_smart(out, owner, &watch->m_proxiedHttp);
    if (hasPrefix(url, "http://") || hasPrefix(url, "https://"))
        return git_transport_smart(out, owner, &watch->m_http);
    if (isSsh(url) && !QFile::exists(QFile::decodeName(url)))
        return git_transport_smart(out, owner, &watch->m_ssh);
    watch->noteLocal();
    return git_transport_new(out, owner, url);
}

} // namespace corvane
