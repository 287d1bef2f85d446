// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

namespace corvane {

// Ends the wait of a thread that is blocked on a network socket, from another thread. libgit2 1.5 waits
// on its sockets (and libssh2 on its session's) without any time limit; shutting the socket down makes
// the blocked call return at once, and the transfer then fails like one whose server hung up. Only the
// network (IPv4, IPv6) sockets the thread is waiting on at that moment are touched: read from the
// kernel's record of the thread's current system call, checked twice so that a thread which moved on
// is left alone.
// Linux only; elsewhere nothing is known and nothing is broken.
class BlockedSocketBreaker {
public:
    struct Wait {
        bool onSocket = false;   // the thread waits on at least one socket
        bool connecting = false; // ... to connect, or to resolve the server's address
    };

    // The calling thread's id, as the breaker names threads.
    static pid_t currentThread();

    // What thread is waiting for; with shutDown, the sockets it waits on are shut down.
    static Wait inspect(pid_t thread, bool shutDown);
};

} // namespace corvane
