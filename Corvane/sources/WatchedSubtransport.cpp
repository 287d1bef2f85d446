// SPDX-License-Identifier: MIT
#include "Corvane/sources/WatchedSubtransport.h"

#include "Corvane/sources/TransferWatch.h"

namespace corvane {
namespace {

// The C structs come first so libgit2's pointers convert back to them.
struct Stream;

struct Subtransport {
    git_smart_subtransport parent;
    git_smart_subtransport* inner;
    TransferWatch* watch;
    Stream* current; // ssh hands out one stream for the listing and the fetch that follows it
};

struct Stream {
    git_smart_subtransport_stream parent;
    git_smart_subtransport_stream* inner;
    Subtransport* owner;
};

int stopIfTimedOut(TransferWatch* watch, int code)
{
    if (watch->timedOut()) {
        watch->reportTimeOut();
        return -1;
    }
    return code;
}

int readStream(git_smart_subtransport_stream* base, char* buffer, size_t size, size_t* bytesRead)
{
    auto stream = reinterpret_cast<Stream*>(base);
    TransferWatch* watch = stream->owner->watch;
    if (watch->timedOut())
        return stopIfTimedOut(watch, -1);
    const int code = stream->inner->read(stream->inner, buffer, size, bytesRead);
    if (code >= 0 && *bytesRead > 0)
        watch->noteReceived();
    return stopIfTimedOut(watch, code);
}

int writeStream(git_smart_subtransport_stream* base, const char* buffer, size_t length)
{
    auto stream = reinterpret_cast<Stream*>(base);
    TransferWatch* watch = stream->owner->watch;
    if (watch->timedOut())
        return stopIfTimedOut(watch, -1);
    const int code = stream->inner->write(stream->inner, buffer, length);
    if (code >= 0)
        watch->noteSent();
    return stopIfTimedOut(watch, code);
}

void freeStream(git_smart_subtransport_stream* base)
{
    auto stream = reinterpret_cast<Stream*>(base);
    if (stream->owner->current == stream)
        stream->owner->current = nullptr;
    stream->inner->free(stream->inner);
    delete stream;
}

int action(git_smart_subtransport_stream** out, git_smart_subtransport* base, const char* url,
           git_smart_service_t service)
{
    auto subtransport = reinterpret_cast<Subtransport*>(base);
    *out = nullptr;
    git_smart_subtransport_stream* inner = nullptr;
    const int code = subtransport->inner->action(&inner, subtransport->inner, url, service);
    if (code < 0)
        return stopIfTimedOut(subtransport->watch, code);
    if (subtransport->current && subtransport->current->inner == inner) {
        *out = &subtransport->current->parent;
        return 0;
    }
    auto stream = new Stream{};
    stream->parent.subtransport = base;
    stream->parent.read = readStream;
    stream->parent.write = writeStream;
    stream->parent.free = freeStream;
    stream->inner = inner;
    stream->owner = subtransport;
    subtransport->current = stream;
    *out = &stream->parent;
    return 0;
}

int closeSubtransport(git_smart_subtransport* base)
{
    auto subtransport = reinterpret_cast<Subtransport*>(base);
    return subtransport->inner->close(subtransport->inner);
}

void freeSubtransport(git_smart_subtransport* base)
{
    auto subtransport = reinterpret_cast<Subtransport*>(base);
    subtransport->inner->free(subtransport->inner);
    delete subtransport;
}

int wrap(git_smart_subtransport** out, git_smart_subtransport* inner, void* param)
{
    auto subtransport = new Subtransport{};
    subtransport->parent.action = action;
    subtransport->parent.close = closeSubtransport;
    subtransport->parent.free = freeSubtransport;
    subtransport->inner = inner;
    subtransport->watch = static_cast<TransferWatch*>(param);
    *out = &subtransport->parent;
    return 0;
}

} // namespace

int WatchedSubtransport::createHttp(git_smart_subtransport** out, git_transport* owner, void* param)
{
    git_smart_subtransport* inner = nullptr;
    if (const int code = git_smart_subtransport_http(&inner, owner, nullptr); code < 0)
        return code;
    return wrap(out, inner, param);
}

int WatchedSubtransport::createSsh(git_smart_subtransport** out, git_transport* owner, void* param)
{
    git_smart_subtransport* inner = nullptr;
    if (const int code = git_smart_subtransport_ssh(&inner, owner, nullptr); code < 0)
        return code;
    return wrap(out, inner, param);
}

} // namespace corvane
