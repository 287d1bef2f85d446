#include "StalledGitServer.h"

#include <QString>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::test {
namespace {

QByteArray packetLine(const QByteArray& payload)
{
    return QByteArray::number(payload.size() + 4, 16).rightJustified(4, '0') + payload;
}

bool sendAll(int connection, const QByteArray& bytes)
{
    qsizetype offset = 0;
    while (offset < bytes.size()) {
        const ssize_t sent = ::send(connection, bytes.constData() + offset, size_t(bytes.size() - offset), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        offset += sent;
    }
    return true;
}

} // namespace

StalledGitServer::StalledGitServer(Behaviour behaviour) : m_behaviour(behaviour)
{
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(m_listener, reinterpret_cast<sockaddr*>(&address), length) != 0 || ::listen(m_listener, 16) != 0
        || ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return;
    m_port = ntohs(address.sin_port);
    // A silent server need not even accept: the kernel completes the connection all the same.
    if (m_behaviour == Behaviour::chatty)
        m_thread = std::thread([this] { serve(); });
}

StalledGitServer::~StalledGitServer()
{
    m_stopping = true;
    if (m_thread.joinable())
        m_thread.join();
    if (m_listener >= 0)
        ::close(m_listener);
}

QUrl StalledGitServer::url(const QString& userInfo) const
{
    const QString authority = userInfo.isEmpty() ? QString() : userInfo + u'@';
    return QUrl(QStringLiteral("git://") + authority + QStringLiteral("127.0.0.1:%1/themes").arg(m_port));
}

void StalledGitServer::serve()
{
    while (!m_stopping) {
        pollfd waiting{m_listener, POLLIN, 0};
        if (::poll(&waiting, 1, 50) <= 0)
            continue;
        const int connection = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            continue;
        converse(connection);
        ::close(connection);
    }
}

void StalledGitServer::converse(int connection)
{
    // Reads until the client has said what it wants and that it is done asking.
    const auto readUntil = [&](const QByteArray& marker, QByteArray& received) {
        char buffer[4096];
        while (!m_stopping && !received.contains(marker)) {
            pollfd readable{connection, POLLIN, 0};
            if (::poll(&readable, 1, 50) <= 0)
                continue;
            const ssize_t count = ::recv(connection, buffer, sizeof buffer, 0);
            if (count <= 0)
                return false;
            received.append(buffer, count);
        }
        return received.contains(marker);
    };

    QByteArray received;
    if (!readUntil(QByteArray("host=", 5), received))
        return;
    const QByteArray commit(40, '1');
    const QByteArray listing = packetLine(commit + " HEAD" + '\0' + "side-band-64k\n")
        + packetLine(commit + " refs/heads/master\n") + "0000";
    if (!sendAll(connection, listing))
        return;
    received.clear();
    if (!readUntil("done\n", received) || !sendAll(connection, packetLine("NAK\n")))
        return;
    const QByteArray progress = packetLine(QByteArray(1, '\2') + "Counting objects: still counting\n");
    while (!m_stopping && sendAll(connection, progress))
        ::usleep(100 * 1000);
}

} // namespace corvane::test
