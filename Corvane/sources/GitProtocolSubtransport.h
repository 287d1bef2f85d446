// SPDX-License-Identifier: MIT
#pragma once

#include <git2.h>
#include <git2/sys/transport.h>

namespace corvane {

class TransferWatch;

// The git:// protocol (git daemon, port 9418) carried over a socket of our own, so that connecting,
// sending and every wait for the server's next bytes end when the watch times the transfer out. libgit2's smart
// transport speaks the protocol on top; this only moves the bytes. Fetching only.
class GitProtocolSubtransport {
public:
    // A git_smart_subtransport_cb; param is the operation's TransferWatch.
    static int create(git_smart_subtransport** out, git_transport* owner, void* param);

    // Whether the platform has the socket this needs; elsewhere libgit2's own git:// serves.
    static bool isAvailable();
};

} // namespace corvane
