// SPDX-License-Identifier: MIT
#include "Corvane/sources/ProxiedHttpSubtransport.h"

#include "Corvane/sources/HttpResponseReader.h"
#include "Corvane/sources/TransferWatch.h"
#include "Corvane/sources/WatchedSocket.h"

#include <git2/sys/credential.h>

#include <QByteArray>
#include <QUrl>

#include <memory>

namespace corvane {
namespace {

// Questions for credentials and redirects of one request, together; a server that keeps asking is
// refusing.
constexpr int mostRounds = 8;

constexpr char listingSuffix[] = "/info/refs?service=git-upload-pack";
constexpr char fetchSuffix[] = "/git-upload-pack";

int fail(const QByteArray& text, int code = -1)
{
    git_error_set_str(GIT_ERROR_HTTP, text.constData());
    return code;
}

QByteArray basicAuthorization(const QString& user, const QString& password)
{
    return "Basic " + (user + u':' + password).toUtf8().toBase64();
}

QByteArray hostAndPort(const QUrl& url)
{
    QByteArray host = url.host(QUrl::FullyEncoded).toUtf8();
    if (host.contains(':'))
        host = '[' + host + ']';
    if (url.port() >= 0)
        host += ':' + QByteArray::number(url.port());
    return host;
}

struct Subtransport {
    git_smart_subtransport parent;
    git_transport* owner;
    TransferWatch* watch;
    QUrl proxy;
    QByteArray proxyAuthorization;  // from the proxy's URL
    QByteArray serverAuthorization; // once the server asked and credentials were given
    QByteArray user;                // named by the remote's URL, offered to the credential callback
    QByteArray repository;          // the remote's URL, as the listing's redirects left it
};

// One request of git's protocol and its response, on a connection of its own.
class Exchange {
public:
    Exchange(Subtransport& transport, git_smart_service_t service)
        : m_transport(transport)
        , m_listing(service == GIT_SERVICE_UPLOADPACK_LS)
    {
    }

    void append(const char* data, size_t length) { m_body.append(data, qsizetype(length)); }

    int read(char* buffer, size_t size, size_t* bytesRead)
    {
        *bytesRead = 0;
        if (!m_performed) {
            m_performed = true;
            if (const int code = perform(); code < 0) {
                m_response.reset(); // an answer that failed is never read as git's
                return code;
            }
        }
        if (!m_response)
            return fail("the request to " + m_transport.repository + " failed before");
        const ssize_t received = m_response->readBody(buffer, size);
        if (received < 0)
            return -1;
        *bytesRead = size_t(received);
        return 0;
    }

private:
    QUrl target() const
    {
        return QUrl::fromEncoded(m_transport.repository + (m_listing ? listingSuffix : fetchSuffix), QUrl::StrictMode);
    }

    QByteArray proxyName() const { return "the proxy " + hostAndPort(m_transport.proxy); }

    QByteArray requestHead(const QUrl& target) const
    {
        QByteArray head = (m_listing ? "GET " : "POST ") + target.toEncoded() + " HTTP/1.1\r\n";
        head += "Host: " + hostAndPort(target) + "\r\n";
        head += "User-Agent: git/2.0 (Corvane)\r\n";
        head += "Pragma: no-cache\r\n";
        if (m_listing) {
            head += "Accept: */*\r\n";
        } else {
            head += "Accept: application/x-git-upload-pack-result\r\n";
            head += "Content-Type: application/x-git-upload-pack-request\r\n";
            head += "Content-Length: " + QByteArray::number(m_body.size()) + "\r\n";
        }
        if (!m_transport.proxyAuthorization.isEmpty())
            head += "Proxy-Authorization: " + m_transport.proxyAuthorization + "\r\n";
        if (!m_transport.serverAuthorization.isEmpty())
            head += "Authorization: " + m_transport.serverAuthorization + "\r\n";
        head += "Connection: close\r\n\r\n";
        return head;
    }

    int perform()
    {
        for (int round = 0;; ++round) {
            const QUrl target = this->target();
            if (!target.isValid())
                return fail("malformed URL " + m_transport.repository);
            m_response.reset();
            m_socket = std::make_unique<WatchedSocket>(*m_transport.watch);
            if (!m_socket->connectTo(m_transport.proxy.host(QUrl::FullyEncoded).toUtf8(),
                                     QByteArray::number(m_transport.proxy.port(80)))
                || !m_socket->sendAll(requestHead(target)) || !m_socket->sendAll(m_body))
                return -1;
            m_response = std::make_unique<HttpResponseReader>(*m_socket, proxyName());
            if (!m_response->readHead())
                return -1;
            const int status = m_response->status();
            if (status == 200)
                return checkContentType();
            if (round + 1 >= mostRounds)
                return fail("too many redirects or authentication replays");
            if (status == 401) {
                if (const int code = askForCredentials(); code < 0)
                    return code;
                continue;
            }
            if (status == 407)
                return fail(m_transport.proxyAuthorization.isEmpty()
                                ? proxyName() + " asks for credentials; give them in its URL"
                                : proxyName() + " refused the credentials of its URL",
                            GIT_EAUTH);
            if (m_listing && (status == 301 || status == 302 || status == 303 || status == 307 || status == 308)) {
                if (const int code = followRedirect(target); code < 0)
                    return code;
                continue;
            }
            return fail("unexpected http status code: " + QByteArray::number(status));
        }
    }

    int checkContentType() const
    {
        const QByteArray expected = m_listing ? "application/x-git-upload-pack-advertisement"
                                              : "application/x-git-upload-pack-result";
        const QByteArray given = m_response->header("content-type");
        if (given.split(';').value(0).trimmed().toLower() != expected)
            return fail("invalid content-type: '" + given + '\'');
        return 0;
    }

    int askForCredentials()
    {
        git_credential* raw = nullptr;
        const int code = git_transport_smart_credentials(
            &raw, m_transport.owner, m_transport.user.isEmpty() ? nullptr : m_transport.user.constData(),
            GIT_CREDENTIAL_USERPASS_PLAINTEXT);
        if (code < 0 && code != GIT_PASSTHROUGH)
            return code; // the callback's own refusal, with its text
        if (code != 0 || !raw)
            return fail("remote authentication required but no callback set", GIT_EAUTH);
        std::unique_ptr<git_credential, void (*)(git_credential*)> credential(raw, git_credential_free);
        if (raw->credtype != GIT_CREDENTIAL_USERPASS_PLAINTEXT)
            return fail("the credentials given are no user name and password", GIT_EAUTH);
        const auto* plain = reinterpret_cast<const git_credential_userpass_plaintext*>(raw);
        m_transport.serverAuthorization
            = basicAuthorization(QString::fromUtf8(plain->username), QString::fromUtf8(plain->password));
        return 0;
    }

    // The listing may move (a renamed repository); the fetch then goes where it went. Only to plain
    // http: anything else would leave the proxy behind.
    int followRedirect(const QUrl& from)
    {
        const QByteArray location = m_response->header("location");
        const QUrl to = from.resolved(QUrl::fromEncoded(location));
        if (to.scheme() != QLatin1String("http"))
            return fail(from.toEncoded() + " redirects to " + to.toEncoded(QUrl::RemoveUserInfo)
                        + ", which cannot be reached through the http proxy; configure that URL");
        QByteArray moved = to.toEncoded(QUrl::RemoveUserInfo);
        if (!moved.endsWith(listingSuffix))
            return fail(from.toEncoded() + " redirects to " + moved + ", which is not a git repository");
        moved.chop(qsizetype(sizeof listingSuffix - 1));
        m_transport.repository = moved;
        return 0;
    }

    Subtransport& m_transport;
    bool m_listing;
    bool m_performed = false;
    QByteArray m_body; // what libgit2 writes, sent with the request once it reads
    std::unique_ptr<WatchedSocket> m_socket;
    std::unique_ptr<HttpResponseReader> m_response;
};

// The C struct comes first so libgit2's pointer converts back to it.
struct Stream {
    git_smart_subtransport_stream parent;
    Exchange* exchange;
};

int readStream(git_smart_subtransport_stream* base, char* buffer, size_t size, size_t* bytesRead)
{
    return reinterpret_cast<Stream*>(base)->exchange->read(buffer, size, bytesRead);
}

int writeStream(git_smart_subtransport_stream* base, const char* buffer, size_t length)
{
    reinterpret_cast<Stream*>(base)->exchange->append(buffer, length);
    return 0;
}

void freeStream(git_smart_subtransport_stream* base)
{
    auto stream = reinterpret_cast<Stream*>(base);
    delete stream->exchange;
    delete stream;
}

int action(git_smart_subtransport_stream** out, git_smart_subtransport* base, const char* url,
           git_smart_service_t service)
{
    auto subtransport = reinterpret_cast<Subtransport*>(base);
    *out = nullptr;
    if (service != GIT_SERVICE_UPLOADPACK_LS && service != GIT_SERVICE_UPLOADPACK)
        return fail("pushing through an http proxy is not supported");
    if (service == GIT_SERVICE_UPLOADPACK_LS || subtransport->repository.isEmpty()) {
        const QUrl remote = QUrl::fromEncoded(url);
        subtransport->user = remote.userName(QUrl::FullyDecoded).toUtf8();
        QByteArray repository = remote.toEncoded(QUrl::RemoveUserInfo | QUrl::StripTrailingSlash);
        subtransport->repository = repository;
    }
    auto stream = new Stream{};
    stream->parent.subtransport = base;
    stream->parent.read = readStream;
    stream->parent.write = writeStream;
    stream->parent.free = freeStream;
    stream->exchange = new Exchange(*subtransport, service);
    *out = &stream->parent;
    return 0;
}

int closeSubtransport(git_smart_subtransport*)
{
    return 0;
}

void freeSubtransport(git_smart_subtransport* base)
{
    delete reinterpret_cast<Subtransport*>(base);
}

} // namespace

int ProxiedHttpSubtransport::create(git_smart_subtransport** out, git_transport* owner, void* param)
{
    auto watch = static_cast<TransferWatch*>(param);
    const QUrl proxy = watch->httpProxy();
    if (proxy.scheme() != QLatin1String("http") || proxy.host().isEmpty()) {
        *out = nullptr;
        return fail("the proxy " + proxy.toEncoded(QUrl::RemoveUserInfo)
                    + " is not an http proxy; plain http remotes go through http proxies only");
    }
    auto subtransport = new Subtransport{};
    subtransport->parent.action = action;
    subtransport->parent.close = closeSubtransport;
    subtransport->parent.free = freeSubtransport;
    subtransport->owner = owner;
    subtransport->watch = watch;
    subtransport->proxy = proxy;
    if (!proxy.userName().isEmpty())
        subtransport->proxyAuthorization = basicAuthorization(proxy.userName(QUrl::FullyDecoded),
                                                              proxy.password(QUrl::FullyDecoded));
    *out = &subtransport->parent;
    return 0;
}

bool ProxiedHttpSubtransport::isAvailable()
{
    return WatchedSocket::isAvailable();
}

} // namespace corvane
