// SPDX-License-Identifier: MIT
#pragma once

#include <git2.h>
#include <git2/sys/transport.h>

namespace corvane {

// git's smart http protocol to an http:// remote through a forward proxy. libgit2 1.5 cannot do this: it
// connects to plain http servers directly whatever the proxy settings (https it tunnels with CONNECT
// itself). Every request names its absolute target to the proxy; the credentials a server asks for come
// from the operation's credential callback, the proxy's own from the user information of its URL.
// Connections are our own (WatchedSocket), so the operation's TransferWatch ends every wait. Fetching
// only.
class ProxiedHttpSubtransport {
public:
    // A git_smart_subtransport_cb; param is the operation's TransferWatch, which names the proxy.
    static int create(git_smart_subtransport** out, git_transport* owner, void* param);

    // Whether the platform has what this needs; elsewhere plain http goes to libgit2 unproxied.
    static bool isAvailable();
};

} // namespace corvane
