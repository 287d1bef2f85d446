// SPDX-License-Identifier: MIT
#include "Corvane/sources/GitProtocolSubtransport.h"

#include "Corvane/sources/TransferWatch.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstring>
#include <memory>

#if defined(__unix__) || defined(__APPLE__)
#define CORVANE_HAS_POSIX_SOCKETS 1
#include <cerrno>
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <unistd.h>
#endif

namespace corvane {

#ifdef CORVANE_HAS_POSIX_SOCKETS
namespace {


// Where a git:// URL points, and the request that opens upload-pack there.
struct Endpoint {
    QByteArray host;
    QByteArray port = "9418";
    QByteArray path;
};

bool parseUrl(const char* url, Endpoint& endpoint)
{
    QByteArray rest(url);
    if (!rest.startsWith("git://"))
        return false;
    rest = rest.mid(6);
    const qsizetype slash = rest.indexOf('/');
    if (slash <= 0)
        return false;
    QByteArray authority = rest.left(slash);
    endpoint.path = rest.mid(slash);
    // A user name means nothing to git daemon and must not travel on.
    if (const qsizetype at = authority.lastIndexOf('@'); at >= 0)
        authority = authority.mid(at + 1);
    if (authority.startsWith('[')) {
        const qsizetype close = authority.indexOf(']');
        if (close < 0)
            return false;
        endpoint.host = authority.mid(1, close - 1);
        if (authority.size() > close + 1) {
            if (authority.at(close + 1) != ':')
                return false;
            endpoint.port = authority.mid(close + 2);
        }
    } else if (const qsizetype colon = authority.lastIndexOf(':'); colon >= 0) {
        endpoint.host = authority.left(colon);
        endpoint.port = authority.mid(colon + 1);
    } else {
        endpoint.host = authority;
    }
    if (endpoint.port.isEmpty())
        endpoint.port = "9418";
    // "/~user/repo" names a user's repository; the daemon expects it without the leading slash.
    if (endpoint.path.startsWith("/~"))
        endpoint.path = endpoint.path.mid(1);
    return !endpoint.host.isEmpty();
}

// pkt-line "git-upload-pack <path>\0host=<host>\0"
QByteArray uploadPackRequest(const Endpoint& endpoint)
{
    QByteArray body = "git-upload-pack " + endpoint.path + '\0' + "host=" + endpoint.host;
    if (endpoint.port != "9418")
        body += ':' + endpoint.port;
    body += '\0';
    return QByteArray::number(body.size() + 4, 16).rightJustified(4, '0') + body;
}

void setNetworkError(const QByteArray& text)
{
    git_error_set_str(GIT_ERROR_NET, text.constData());
}

void setSystemError(const char* what, const QByteArray& host, int error)
{
    setNetworkError(QByteArray(what) + ' ' + host + ": " + std::strerror(error));
}

struct Subtransport;

// The socket and the request of one upload-pack conversation.
struct StreamState {
    Subtransport* owner = nullptr;
    TransferWatch* watch = nullptr;
    Endpoint endpoint;
    int socket = -1;
    bool sentRequest = false;

    ~StreamState()
    {
        if (socket >= 0)
            ::close(socket);
    }

    // Waits for the socket to be ready until the watch says the transfer has timed out; false with the
    // error set otherwise.
    bool waitFor(short events)
    {
        const int slice = int(watch->pollInterval().count());
        while (true) {
            pollfd descriptor{socket, events, 0};
            const int ready = ::poll(&descriptor, 1, slice);
            if (ready > 0)
                return true;
            if (ready == 0) {
                if (!watch->timedOut())
                    continue;
                watch->reportTimeOut();
                return false;
            }
            if (errno != EINTR) {
                setSystemError("could not wait for", endpoint.host, errno);
                return false;
            }
        }
    }

    bool connectToServer()
    {
        watch->noteConnecting();
        addrinfo hints{};
        hints.ai_family = AF_UNSPEC;
        hints.ai_socktype = SOCK_STREAM;
        addrinfo* found = nullptr;
        if (const int status = ::getaddrinfo(endpoint.host.constData(), endpoint.port.constData(), &hints, &found);
            status != 0) {
            setNetworkError("failed to resolve address for " + endpoint.host + ": " + ::gai_strerror(status));
            return false;
        }
        std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> addresses(found, ::freeaddrinfo);
        int lastError = ECONNREFUSED;
        for (addrinfo* address = found; address; address = address->ai_next) {
            socket = ::socket(address->ai_family, address->ai_socktype | SOCK_CLOEXEC, address->ai_protocol);
            if (socket < 0) {
                lastError = errno;
                continue;
            }
            ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK);
            int status = ::connect(socket, address->ai_addr, address->ai_addrlen);
            if (status < 0 && errno == EINPROGRESS) {
                if (!waitFor(POLLOUT))
                    return false; // a time-out ends the attempt; it is no reason to try other addresses
                int error = 0;
                socklen_t length = sizeof error;
                ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length);
                status = error == 0 ? 0 : -1;
                errno = error;
            }
            if (status == 0) {
                watch->noteConnected();
                return true;
            }
            lastError = errno;
            ::close(socket);
            socket = -1;
        }
        setSystemError("failed to connect to", endpoint.host, lastError);
        return false;
    }

    bool sendAll(const char* data, size_t length)
    {
        while (length > 0) {
            const ssize_t sent = ::send(socket, data, length, MSG_NOSIGNAL);
            if (sent > 0) {
                watch->noteSent();
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
            setSystemError("could not send data to", endpoint.host, errno);
            return false;
        }
        return true;
    }

    bool sendRequestOnce()
    {
        if (sentRequest)
            return true;
        const QByteArray request = uploadPackRequest(endpoint);
        if (!sendAll(request.constData(), size_t(request.size())))
            return false;
        sentRequest = true;
        return true;
    }

    int read(char* buffer, size_t size, size_t* bytesRead)
    {
        *bytesRead = 0;
        if (!sendRequestOnce())
            return -1;
        while (true) {
            const ssize_t received = ::recv(socket, buffer, size, 0);
            if (received >= 0) {
                if (received > 0)
                    watch->noteReceived();
                *bytesRead = size_t(received); // 0: the server closed the connection
                return 0;
            }
            if (errno == EINTR)
                continue;
            if (errno == EAGAIN || errno == EWOULDBLOCK) {
                if (!waitFor(POLLIN))
                    return -1;
                continue;
            }
            setSystemError("could not read from", endpoint.host, errno);
            return -1;
        }
    }

    int write(const char* buffer, size_t length)
    {
        if (!sendRequestOnce() || !sendAll(buffer, length))
            return -1;
        return 0;
    }
};

// The C structs come first so libgit2's pointers convert back to them.
struct Stream {
    git_smart_subtransport_stream parent;
    StreamState* state;
};

struct Subtransport {
    git_smart_subtransport parent;
    TransferWatch* watch;
    Stream* current; // the conversation the listing opened, which the fetch goes on with
};

void freeStream(git_smart_subtransport_stream* base)
{
    auto stream = reinterpret_cast<Stream*>(base);
    if (stream->state->owner && stream->state->owner->current == stream)
        stream->state->owner->current = nullptr;
    delete stream->state;
    delete stream;
}

int readStream(git_smart_subtransport_stream* base, char* buffer, size_t size, size_t* bytesRead)
{
    return reinterpret_cast<Stream*>(base)->state->read(buffer, size, bytesRead);
}

int writeStream(git_smart_subtransport_stream* base, const char* buffer, size_t length)
{
    return reinterpret_cast<Stream*>(base)->state->write(buffer, length);
}

int action(git_smart_subtransport_stream** out, git_smart_subtransport* base, const char* url,
           git_smart_service_t service)
{
    auto subtransport = reinterpret_cast<Subtransport*>(base);
    *out = nullptr;
    if (service == GIT_SERVICE_UPLOADPACK) {
        if (!subtransport->current) {
            setNetworkError("the reference listing must come before the fetch");
            return -1;
        }
        *out = &subtransport->current->parent;
        return 0;
    }
    if (service != GIT_SERVICE_UPLOADPACK_LS) {
        setNetworkError("pushing over git:// is not supported");
        return -1;
    }
    auto state = std::make_unique<StreamState>();
    state->watch = subtransport->watch;
    if (!parseUrl(url, state->endpoint)) {
        setNetworkError("malformed URL");
        return -1;
    }
    if (!state->connectToServer())
        return -1;
    auto stream = new Stream{};
    stream->parent.subtransport = base;
    stream->parent.read = readStream;
    stream->parent.write = writeStream;
    stream->parent.free = freeStream;
    stream->state = state.release();
    stream->state->owner = subtransport;
    if (subtransport->current)
        freeStream(&subtransport->current->parent);
    subtransport->current = stream;
    *out = &stream->parent;
    return 0;
}

int closeSubtransport(git_smart_subtransport* base)
{
    auto subtransport = reinterpret_cast<Subtransport*>(base);
    if (subtransport->current)
        freeStream(&subtransport->current->parent);
    return 0;
}

void freeSubtransport(git_smart_subtransport* base)
{
    closeSubtransport(base);
    delete reinterpret_cast<Subtransport*>(base);
}

} // namespace

int GitProtocolSubtransport::create(git_smart_subtransport** out, git_transport*, void* param)
{
    auto subtransport = new Subtransport{};
    subtransport->parent.action = action;
    subtransport->parent.close = closeSubtransport;
    subtransport->parent.free = freeSubtransport;
    subtransport->watch = static_cast<TransferWatch*>(param);
    *out = &subtransport->parent;
    return 0;
}

bool GitProtocolSubtransport::isAvailable()
{
    return true;
}

#else

int GitProtocolSubtransport::create(git_smart_subtransport** out, git_transport* owner, void*)
{
    return git_smart_subtransport_git(out, owner, nullptr);
}

bool GitProtocolSubtransport::isAvailable()
{
    return false;
}

#endif

} // namespace corvane
