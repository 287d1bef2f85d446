// SPDX-License-Identifier: MIT
#include "Corvane/sources/WatchedSocket.h"

#include "Corvane/sources/TransferWatch.h"

#include <git2.h>

#include <cstring>
#include <memory>

#if defined(__unix__) || defined(__APPLE__)
#define CORVANE_HAS_POSIX_SOCKETS 1
#include <cerrno>
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace corvane {

WatchedSocket::WatchedSocket(TransferWatch& watch)
    : m_watch(watch)
{
}

void WatchedSocket::setNetworkError(const QByteArray& text)
{
    git_error_set_str(GIT_ERROR_NET, text.constData());
}

void WatchedSocket::setSystemError(const char* what, int error) const
{
    setNetworkError(QByteArray(what) + ' ' + m_host + ": " + std::strerror(error));
}

#ifdef CORVANE_HAS_POSIX_SOCKETS

WatchedSocket::~WatchedSocket()
{
    if (m_socket >= 0)
        ::close(m_socket);
}

bool WatchedSocket::isAvailable()
{
    return true;
}

// Waits for the socket in slices, looking at the watch between them; false with the error set once the
// transfer has timed out or the wait failed.
bool WatchedSocket::waitFor(short events)
{
    const int slice = int(m_watch.pollInterval().count());
    while (true) {
        pollfd descriptor{m_socket, events, 0};
        const int ready = ::poll(&descriptor, 1, slice);
        if (ready > 0)
            return true;
        if (ready == 0) {
            if (!m_watch.timedOut())
                continue;
            m_watch.reportTimeOut();
            return false;
        }
        if (errno != EINTR) {
            setSystemError("could not wait for", errno);
            return false;
        }
    }
}

bool WatchedSocket::connectTo(const QByteArray& host, const QByteArray& port)
{
    m_host = host;
    m_watch.noteConnecting();
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (const int status = ::getaddrinfo(host.constData(), port.constData(), &hints, &found); status != 0) {
        setNetworkError("failed to resolve address for " + host + ": " + ::gai_strerror(status));
        return false;
    }
    std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> addresses(found, ::freeaddrinfo);
    int lastError = ECONNREFUSED;
    for (addrinfo* address = found; address; address = address->ai_next) {
        m_socket = ::socket(address->ai_family, address->ai_socktype | SOCK_CLOEXEC, address->ai_protocol);
        if (m_socket < 0) {
            lastError = errno;
            continue;
        }
        ::fcntl(m_socket, F_SETFL, ::fcntl(m_socket, F_GETFL) | O_NONBLOCK);
        int status = ::connect(m_socket, address->ai_addr, address->ai_addrlen);
        if (status < 0 && errno == EINPROGRESS) {
            if (!waitFor(POLLOUT))
                return false; // a time-out ends the attempt; it is no reason to try other addresses
            int error = 0;
            socklen_t length = sizeof error;
            ::getsockopt(m_socket, SOL_SOCKET, SO_ERROR, &error, &length);
            status = error == 0 ? 0 : -1;
            errno = error;
        }
        if (status == 0) {
            m_watch.noteConnected();
            return true;
        }
        lastError = errno;
        ::close(m_socket);
        m_socket = -1;
    }
    setSystemError("failed to connect to", lastError);
    return false;
}

bool WatchedSocket::sendAll(const char* data, size_t length)
{
    while (length > 0) {
        const ssize_t sent = ::send(m_socket, data, length, MSG_NOSIGNAL);
        if (sent > 0) {
            m_watch.noteSent();
            data += sent;
            length -= size_t(sent);
            continue;
        }
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            if (!waitFor(POLLOUT))
                return false;
            continue;
        }
        setSystemError("could not send data to", errno);
        return false;
    }
    return true;
}

ssize_t WatchedSocket::receive(char* buffer, size_t size)
{
    while (true) {
        const ssize_t received = ::recv(m_socket, buffer, size, 0);
        if (received >= 0) {
            if (received > 0)
                m_watch.noteReceived();
            return received;
        }
        if (errno == EINTR)
            continue;
        if (errno == EAGAIN || errno == EWOULDBLOCK) {
            if (!waitFor(POLLIN))
                return -1;
            continue;
        }
        setSystemError("could not read from", errno);
        return -1;
    }
}

#else

WatchedSocket::~WatchedSocket() = default;

bool WatchedSocket::isAvailable()
{
    return false;
}

bool WatchedSocket::waitFor(short)
{
    return false;
}

bool WatchedSocket::connectTo(const QByteArray& host, const QByteArray&)
{
    m_host = host;
    setNetworkError("no sockets on this platform");
    return false;
}

bool WatchedSocket::sendAll(const char*, size_t)
{
    return false;
}

ssize_t WatchedSocket::receive(char*, size_t)
{
    return -1;
}

#endif

} // namespace corvane
