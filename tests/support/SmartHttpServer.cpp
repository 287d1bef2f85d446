// SPDX-License-Identifier: MIT
#include "SmartHttpServer.h"

#include <QByteArray>
#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QUrl>

#include <algorithm>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::test {
namespace {

// Appends the next bytes the connection gives; false once it has ended or the server stops.
bool readMore(int socket, QByteArray& buffer, const std::atomic<bool>& stopping)
{
    while (!stopping) {
        pollfd readable{socket, POLLIN, 0};
        if (::poll(&readable, 1, 50) <= 0)
            continue;
        char chunk[16384];
        const ssize_t length = ::recv(socket, chunk, sizeof chunk, 0);
        if (length <= 0)
            return false;
        buffer.append(chunk, length);
        return true;
    }
    return false;
}

bool sendAll(int socket, const QByteArray& data)
{
    qsizetype sent = 0;
    while (sent < data.size()) {
        const ssize_t length = ::send(socket, data.constData() + sent, size_t(data.size() - sent), MSG_NOSIGNAL);
        if (length <= 0)
            return false;
        sent += length;
    }
    return true;
}

// A request's header, by name in any case; empty when absent.
QByteArray headerValue(const QByteArray& headers, const QByteArray& name)
{
    for (const QByteArray& line : headers.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().toLower() == name)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

// One request answered by `git http-backend` as a web server runs it (CGI), made into an HTTP/1.1 reply.
// The answer to a fetch comes in chunks, as from a server that streams it without knowing its length;
// everything else with its length.
QByteArray httpBackend(const QString& root, const QByteArray& method, const QByteArray& target,
                       const QByteArray& headers, const QByteArray& body)
{
    const qsizetype question = target.indexOf('?');
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("GIT_PROJECT_ROOT"), root);
    environment.insert(QStringLiteral("GIT_HTTP_EXPORT_ALL"), QStringLiteral("1"));
    environment.insert(QStringLiteral("REQUEST_METHOD"), QString::fromLatin1(method));
    environment.insert(QStringLiteral("PATH_INFO"), QUrl::fromPercentEncoding(question < 0 ? target : target.left(question)));
    environment.insert(QStringLiteral("QUERY_STRING"), question < 0 ? QString() : QString::fromLatin1(target.mid(question + 1)));
    environment.insert(QStringLiteral("CONTENT_TYPE"), QString::fromLatin1(headerValue(headers, "content-type")));
    environment.insert(QStringLiteral("CONTENT_LENGTH"), QString::number(body.size()));
    environment.insert(QStringLiteral("REMOTE_ADDR"), QStringLiteral("127.0.0.1"));
    QProcess git;
    git.setProcessEnvironment(environment);
    git.start(QStringLiteral("git"), {QStringLiteral("http-backend")});
    git.write(body);
    git.closeWriteChannel();
    git.waitForFinished(60000);
    const QByteArray output = git.readAllStandardOutput();

    const qsizetype headEnd = output.indexOf("\r\n\r\n");
    QByteArray status = "200 OK", replyHeaders;
    for (const QByteArray& line : output.left(std::max<qsizetype>(headEnd, 0)).split('\n')) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.toLower().startsWith("status:"))
            status = trimmed.mid(7).trimmed();
        else if (!trimmed.isEmpty())
            replyHeaders += trimmed + "\r\n";
    }
    const QByteArray payload = headEnd < 0 ? QByteArray() : output.mid(headEnd + 4);
    QByteArray reply = "HTTP/1.1 " + status + "\r\n" + replyHeaders;
    if (method != "POST")
        return reply + "Content-Length: " + QByteArray::number(payload.size()) + "\r\n\r\n" + payload;
    reply += "Transfer-Encoding: chunked\r\n\r\n";
    constexpr qsizetype chunk = 16 * 1024;
    for (qsizetype at = 0; at < payload.size(); at += chunk) {
        const QByteArray part = payload.mid(at, chunk);
        reply += QByteArray::number(part.size(), 16) + "\r\n" + part + "\r\n";
    }
    return reply + "0\r\n\r\n";
}

// The body of a request, by its length or in chunks.
bool readBody(int socket, QByteArray& buffer, const QByteArray& headers, QByteArray& body,
              const std::atomic<bool>& stopping)
{
    const QByteArray lower = headers.toLower();
    if (const qsizetype at = lower.indexOf("\r\ncontent-length:"); at >= 0) {
        const qsizetype end = lower.indexOf("\r\n", at + 2);
        const qsizetype length = lower.mid(at + 17, end - at - 17).trimmed().toLongLong();
        while (buffer.size() < length) {
            if (!readMore(socket, buffer, stopping))
                return false;
        }
        body = buffer.left(length);
        buffer.remove(0, length);
        return true;
    }
    if (!lower.contains("\r\ntransfer-encoding: chunked"))
        return true;
    while (true) {
        qsizetype lineEnd;
        while ((lineEnd = buffer.indexOf("\r\n")) < 0) {
            if (!readMore(socket, buffer, stopping))
                return false;
        }
        const qsizetype size = buffer.left(lineEnd).toLongLong(nullptr, 16);
        while (buffer.size() < lineEnd + 2 + size + 2) {
            if (!readMore(socket, buffer, stopping))
                return false;
        }
        body += buffer.mid(lineEnd + 2, size);
        buffer.remove(0, lineEnd + 2 + size + 2);
        if (size == 0)
            return true;
    }
}

bool authorized(const QByteArray& headers, const QByteArray& expected)
{
    return headerValue(headers, "authorization") == expected;
}

} // namespace

SmartHttpServer::SmartHttpServer(QString basePath, QString user, QString password)
    : m_basePath(std::move(basePath))
    , m_authorization(user.isEmpty() ? QByteArray() : "Basic " + (user + u':' + password).toUtf8().toBase64())
    , m_server([this](int client, const std::atomic<bool>& stopping) { answer(client, stopping); })
{
}

QUrl SmartHttpServer::url(const QString& relativePath) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/%2").arg(m_server.port()).arg(relativePath));
}

void SmartHttpServer::answer(int client, const std::atomic<bool>& stopping)
{
    QByteArray buffer;
    while (!stopping) {
        qsizetype headersEnd;
        while ((headersEnd = buffer.indexOf("\r\n\r\n")) < 0) {
            if (!readMore(client, buffer, stopping))
                break;
        }
        if (headersEnd < 0)
            break;
        const QByteArray headers = buffer.left(headersEnd + 2);
        buffer.remove(0, headersEnd + 4);
        const QList<QByteArray> requestLine = headers.left(headers.indexOf("\r\n")).split(' ');
        if (requestLine.size() < 2)
            break;
        QByteArray target = requestLine[1];
        // Through a proxy the target is absolute: http://host:port/path
        if (target.startsWith("http://"))
            target = target.mid(target.indexOf('/', 7));
        QByteArray body;
        if (!readBody(client, buffer, headers, body, stopping))
            break;

        QByteArray reply;
        if (!m_authorization.isEmpty() && !authorized(headers, m_authorization)) {
            reply = "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"themes\"\r\nContent-Length: 0\r\n\r\n";
        } else if (target.startsWith("/moved/")) {
            reply = "HTTP/1.1 301 Moved Permanently\r\nLocation: " + target.mid(6) + "\r\nContent-Length: 0\r\n\r\n";
        } else {
            reply = httpBackend(m_basePath, requestLine[0], target, headers, body);
        }
        if (!sendAll(client, reply))
            break;
    }
    ::close(client);
}

} // namespace corvane::test
