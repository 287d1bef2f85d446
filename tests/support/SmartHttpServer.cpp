// SPDX-License-Identifier: MIT
#include "SmartHttpServer.h"

#include <QByteArray>
#include <QDir>
#include <QProcess>

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

QByteArray uploadPack(const QString& repository, const QStringList& options, const QByteArray& input)
{
    QProcess git;
    git.start(QStringLiteral("git"), QStringList{QStringLiteral("upload-pack"), QStringLiteral("--stateless-rpc")} + options
                                         + QStringList{repository});
    git.write(input);
    git.closeWriteChannel();
    git.waitForFinished(60000);
    return git.readAllStandardOutput();
}

QByteArray response(const QByteArray& contentType, const QByteArray& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: " + contentType + "\r\nCache-Control: no-cache\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

// The answer to a fetch comes in chunks, as from a server that streams it without knowing its length.
QByteArray chunkedResponse(const QByteArray& contentType, const QByteArray& body)
{
    QByteArray reply = "HTTP/1.1 200 OK\r\nContent-Type: " + contentType + "\r\nTransfer-Encoding: chunked\r\n\r\n";
    constexpr qsizetype chunk = 16 * 1024;
    for (qsizetype at = 0; at < body.size(); at += chunk) {
        const QByteArray part = body.mid(at, chunk);
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
    for (const QByteArray& line : headers.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().toLower() == "authorization")
            return line.mid(colon + 1).trimmed() == expected;
    }
    return false;
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
        } else if (target.endsWith("/info/refs?service=git-upload-pack")) {
            const QString repository = QDir(m_basePath).filePath(QString::fromUtf8(target.mid(1, target.indexOf("/info/refs") - 1)));
            reply = response("application/x-git-upload-pack-advertisement",
                             "001e# service=git-upload-pack\n0000" + uploadPack(repository, {QStringLiteral("--advertise-refs")}, {}));
        } else if (target.endsWith("/git-upload-pack")) {
            const QString repository = QDir(m_basePath).filePath(QString::fromUtf8(target.mid(1, target.size() - 17)));
            reply = chunkedResponse("application/x-git-upload-pack-result", uploadPack(repository, {}, body));
        } else {
            reply = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";
        }
        if (!sendAll(client, reply))
            break;
    }
    ::close(client);
}

} // namespace corvane::test
