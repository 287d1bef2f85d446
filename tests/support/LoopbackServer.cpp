// SPDX-License-Identifier: MIT
#include "LoopbackServer.h"

#include <QtGlobal>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::test {

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

int connectToLoopback(std::uint16_t port)
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

LoopbackServer::LoopbackServer(Handler handler) : m_handler(std::move(handler))
{
    m_listener = listenOnLoopback(16, m_port);
    m_thread = std::thread([this] { serve(); });
}

LoopbackServer::~LoopbackServer()
{
    stop();
}

void LoopbackServer::stop()
{
    if (m_stopping.exchange(true))
        return;
    m_thread.join();
    for (std::thread& connection : m_connections)
        connection.join();
    ::close(m_listener);
}

void LoopbackServer::serve()
{
    while (!m_stopping) {
        pollfd listening{m_listener, POLLIN, 0};
        if (::poll(&listening, 1, 50) <= 0)
            continue;
        const int client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client >= 0)
            m_connections.emplace_back([this, client] { m_handler(client, m_stopping); });
    }
}

} // namespace corvane::test
