// SPDX-License-Identifier: MIT
#include "StallingServer.h"

#include <QList>

#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::test {
namespace {

int listenOnLoopback(int backlog, std::uint16_t& port)
{
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(listener, reinterpret_cast<sockaddr*>(&address), length) != 0 || ::listen(listener, backlog) != 0
        || ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        qFatal("cannot listen on 127.0.0.1");
    port = ntohs(address.sin_port);
    return listener;
}

int connectTo(std::uint16_t port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    if (::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(socket);
        return -1;
    }
    return socket;
}

} // namespace

StallingServer::StallingServer(Behaviour behaviour) : m_behaviour(std::move(behaviour))
{
    if (m_behaviour.unreachable) {
        m_listener = listenOnLoopback(0, m_port);
        // One connection the server never takes fills a queue of length zero; later ones wait for ever.
        m_queueFiller = connectTo(m_port);
        return;
    }
    m_listener = listenOnLoopback(16, m_port);
    m_thread = std::thread([this] { serve(); });
}

StallingServer::~StallingServer()
{
    m_stopping = true;
    if (m_thread.joinable())
        m_thread.join();
    if (m_queueFiller >= 0)
        ::close(m_queueFiller);
    if (m_listener >= 0)
        ::close(m_listener);
}

void StallingServer::serve()
{
    QList<int> clients;
    std::vector<std::thread> relays;
    while (!m_stopping) {
        pollfd listening{m_listener, POLLIN, 0};
        if (::poll(&listening, 1, 50) <= 0)
            continue;
        const int client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0)
            continue;
        clients << client;
        if (m_behaviour.upstreamPort != 0)
            relays.emplace_back([this, client] { relayConnection(client); });
        else if (!m_behaviour.greeting.isEmpty())
            (void)::send(client, m_behaviour.greeting.constData(), size_t(m_behaviour.greeting.size()), MSG_NOSIGNAL);
    }
    for (std::thread& relay : relays)
        relay.join();
    for (const int client : std::as_const(clients))
        ::close(client);
}

void StallingServer::relayConnection(int client)
{
    const int upstream = connectTo(m_behaviour.upstreamPort);
    if (upstream < 0)
        return;
    char buffer[16384];
    bool frozen = false;
    while (!m_stopping) {
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
    // The client's side stays open (closed with the server) so it sees silence, not an end.
    while (!m_stopping)
        ::usleep(20000);
    ::close(upstream);
}

} // namespace corvane::test
