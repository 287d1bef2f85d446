// SPDX-License-Identifier: MIT
#include "Corvane/sources/BlockedSocketBreaker.h"

#ifdef __linux__
#include <QByteArray>
#include <QFile>
#include <QList>

#include <fcntl.h>
#include <poll.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>
#endif

namespace corvane {

#ifdef __linux__
namespace {

// "<number> <arg1> ... <arg6> <sp> <pc>" while in a system call; "running" or "-1 ..." otherwise.
struct SystemCall {
    long number = -1;
    unsigned long long arguments[6] = {};
};

QByteArray currentCallLine(pid_t thread)
{
    QFile file(QStringLiteral("/proc/self/task/%1/syscall").arg(thread));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    return file.readAll().trimmed();
}

bool parse(const QByteArray& line, SystemCall& call)
{
    const QList<QByteArray> fields = line.split(' ');
    if (fields.size() < 7)
        return false;
    bool ok = false;
    call.number = fields[0].toLong(&ok);
    if (!ok || call.number < 0)
        return false;
    for (int index = 0; index < 6; ++index) {
        call.arguments[index] = fields[index + 1].toULongLong(&ok, 16);
        if (!ok)
            return false;
    }
    return true;
}

// Reads memory of this process that another thread's call points at, without trusting the pointer.
bool readOwnMemory(unsigned long long address, void* into, size_t length)
{
    iovec local{into, length};
    iovec remote{reinterpret_cast<void*>(address), length};
    return ::process_vm_readv(::getpid(), &local, 1, &remote, 1, 0) == ssize_t(length);
}

void addPollDescriptors(unsigned long long address, unsigned long long count, QList<int>& descriptors)
{
    if (count == 0 || count > 16)
        return; // a transfer waits on one socket or a few; anything else is not ours to judge
    pollfd entries[16];
    if (!readOwnMemory(address, entries, sizeof(pollfd) * count))
        return;
    for (unsigned long long index = 0; index < count; ++index)
        descriptors << entries[index].fd;
}

void addSelectDescriptors(unsigned long long count, unsigned long long readSet, unsigned long long writeSet,
                          QList<int>& descriptors)
{
    if (count == 0 || count > FD_SETSIZE)
        return;
    for (const unsigned long long address : {readSet, writeSet}) {
        fd_set set;
        FD_ZERO(&set);
        if (address == 0 || !readOwnMemory(address, &set, sizeof set))
            continue;
        for (int fd = 0; fd < int(count); ++fd) {
            if (FD_ISSET(fd, &set))
                descriptors << fd;
        }
    }
}

QList<int> descriptorsOf(const SystemCall& call, bool& connecting)
{
    QList<int> descriptors;
    const auto* arguments = call.arguments;
    switch (call.number) {
    case SYS_connect:
        connecting = true;
        descriptors << int(arguments[0]);
        break;
    case SYS_recvfrom:
    case SYS_sendto:
    case SYS_recvmsg:
    case SYS_sendmsg:
    case SYS_read:
    case SYS_write:
    case SYS_readv:
    case SYS_writev:
        descriptors << int(arguments[0]);
        break;
#ifdef SYS_poll
    case SYS_poll:
#endif
    case SYS_ppoll:
        addPollDescriptors(arguments[0], arguments[1], descriptors);
        break;
#ifdef SYS_select
    case SYS_select:
#endif
    case SYS_pselect6:
        addSelectDescriptors(arguments[0], arguments[1], arguments[2], descriptors);
        break;
    default:
        break;
    }
    return descriptors;
}

} // namespace

pid_t BlockedSocketBreaker::currentThread()
{
    return pid_t(::syscall(SYS_gettid));
}

BlockedSocketBreaker::Wait BlockedSocketBreaker::inspect(pid_t thread, bool shutDown)
{
    Wait wait;
    const QByteArray line = currentCallLine(thread);
    SystemCall call;
    if (!parse(line, call))
        return wait;
    QList<int> sockets;
    for (const int descriptor : descriptorsOf(call, wait.connecting)) {
        struct stat status;
        if (descriptor < 0 || ::fstat(descriptor, &status) != 0 || !S_ISSOCK(status.st_mode))
            continue;
        // Network sockets only: a local one (an ssh agent, a host's bus connection used from a
        // callback) is not the server's to lose.
        sockaddr_storage address{};
        socklen_t addressLength = sizeof address;
        if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &addressLength) != 0
            || (address.ss_family != AF_INET && address.ss_family != AF_INET6))
            continue;
        int type = 0;
        socklen_t length = sizeof type;
        // An address lookup waits on datagram sockets: the server has not been reached yet.
        if (::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &length) == 0 && type == SOCK_DGRAM)
            wait.connecting = true;
        sockets << descriptor;
    }
    wait.onSocket = !sockets.isEmpty();
    if (!wait.onSocket)
        wait.connecting = false;
    // The descriptors are the thread's only if it is still in the very same call.
    if (shutDown && wait.onSocket && currentCallLine(thread) == line) {
        for (const int descriptor : std::as_const(sockets))
            ::shutdown(descriptor, SHUT_RDWR);
    }
    return wait;
}

#else

pid_t BlockedSocketBreaker::currentThread()
{
    return 0;
}

BlockedSocketBreaker::Wait BlockedSocketBreaker::inspect(pid_t, bool)
{
    return {};
}

#endif

} // namespace corvane
