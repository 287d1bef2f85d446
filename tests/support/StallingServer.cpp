// SPDX-License-Identifier: MIT
#include "StallingServer.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::test {

StallingServer::StallingServer(Behaviour behaviour) : m_behaviour(std::move(behaviour))
{
    if (m_behaviour.unreachable) {
        m_listener = listenOnLoopback(0, m_port);
        // One connection the server never takes fills a queue of length zero; later ones wait for ever.
        m_queueFiller = connectToLoopback(m_port);
        return;
    }
    m_server = std::make_unique<LoopbackServer>([this](int client, const std::atomic<bool>& stopping) {
        if (m_behaviour.upstreamPort != 0)
            relayConnection(client, stopping);
        else if (!m_behaviour.greeting.isEmpty())
            (void)::send(client, m_behaviour.greeting.constData(), size_t(m_behaviour.greeting.size()), MSG_NOSIGNAL);
        // The client's side stays open until the server goes, so it sees silence, not an end.
        while (!stopping)
            ::usleep(20000);
        ::close(client);
    });
    m_port = m_server->port();
}

StallingServer::~StallingServer()
{
    m_server.reset();
    if (m_queueFiller >= 0)
        ::close(m_queueFiller);
    if (m_listener >= 0)
        ::close(m_listener);
}

void StallingServer::relayConnection(int client, const std::atomic<bool>& stopping)
{
    const int upstream = connectToLoopback(m_behaviour.upstreamPort);
    if (upstream < 0)
        return;
    char buffer[16384];
    bool frozen = false;
    while (!stopping) {
        pollfd sides[2] = {{client, POLLIN, 0}, {upstream, short(frozen ? 0 : POLLIN), 0}};
        if (::poll(sides, 2, 50) <= 0)
            continue;
        if (sides[0].revents & (POLLIN | POLLHUP)) {
            const ssize_t length = ::recv(client, buffer, sizeof buffer, 0);
            if (length <= 0)
                break;
            (void)::send(upstream, buffer, size_t(length), MSG_NOSIGNAL);
        }
        if (!frozen && (sides[1].revents & (POLLIN | POLLHUP))) {
            const std::int64_t allowed = m_behaviour.forwardedBytes - m_forwarded.load();
            const ssize_t length = ::recv(upstream, buffer, size_t(std::min<std::int64_t>(allowed, sizeof buffer)), 0);
            if (length <= 0)
                break;
            (void)::send(client, buffer, size_t(length), MSG_NOSIGNAL);
            m_forwarded += length;
            frozen = m_forwarded.load() >= m_behaviour.forwardedBytes;
        }
    }
    ::close(upstream);
}

} // namespace corvane::test
