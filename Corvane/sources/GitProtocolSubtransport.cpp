// SPDX-License-Identifier: MIT
#include "Corvane/sources/GitProtocolSubtransport.h"

#include "Corvane/sources/TransferWatch.h"
#include "Corvane/sources/WatchedSocket.h"

#include <QByteArray>

#include <memory>

namespace corvane {
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

struct Subtransport;

// The connection and the request of one upload-pack conversation.
struct StreamState {
    explicit StreamState(TransferWatch& watch)
        : socket(watch)
    {
    }

    Subtransport* owner = nullptr;
    Endpoint endpoint;
    WatchedSocket socket;
    bool sentRequest = false;

    bool sendRequestOnce()
    {
        if (sentRequest)
            return true;
        if (!socket.sendAll(uploadPackRequest(endpoint)))
            return false;
        sentRequest = true;
        return true;
    }

    int read(char* buffer, size_t size, size_t* bytesRead)
    {
        *bytesRead = 0;
        if (!sendRequestOnce())
            return -1;
        const ssize_t received = socket.receive(buffer, size);
        if (received < 0)
            return -1;
        *bytesRead = size_t(received); // 0: the server closed the connection
        return 0;
    }

    int write(const char* buffer, size_t length)
    {
        if (!sendRequestOnce() || !socket.sendAll(buffer, length))
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
            WatchedSocket::setNetworkError("the reference listing must come before the fetch");
            return -1;
        }
        *out = &subtransport->current->parent;
        return 0;
    }
    if (service != GIT_SERVICE_UPLOADPACK_LS) {
        WatchedSocket::setNetworkError("pushing over git:// is not supported");
        return -1;
    }
    auto state = std::make_unique<StreamState>(*subtransport->watch);
    if (!parseUrl(url, state->endpoint)) {
        WatchedSocket::setNetworkError("malformed URL");
        return -1;
    }
    if (!state->socket.connectTo(state->endpoint.host, state->endpoint.port))
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

int GitProtocolSubtransport::create(git_smart_subtransport** out, git_transport* owner, void* param)
{
    if (!WatchedSocket::isAvailable())
        return git_smart_subtransport_git(out, owner, nullptr);
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
    return WatchedSocket::isAvailable();
}

} // namespace corvane
