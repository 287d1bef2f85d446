// SPDX-License-Identifier: MIT
#pragma once

#include <git2.h>
#include <git2/sys/transport.h>

namespace corvane {

// libgit2's own http(s) or ssh subtransport, unchanged, with every byte it moves reported to the
// operation's TransferWatch: the watch learns when the server first answered and when the transfer last
// moved, even while libgit2 reports no progress (reference listing, negotiation). Proxies, credentials
// and certificate checks stay libgit2's.
class WatchedSubtransport {
public:
    // git_smart_subtransport_cb; param is the operation's TransferWatch.
    static int createHttp(git_smart_subtransport** out, git_transport* owner, void* param);
    static int createSsh(git_smart_subtransport** out, git_transport* owner, void* param);
};

} // namespace corvane
