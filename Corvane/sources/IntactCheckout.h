// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/sources/GitError.h"

#include <git2.h>

namespace corvane {

// Whether a clone still holds exactly the commit it last checked out, so a forced checkout of that
// commit would change nothing: HEAD detached at the commit, the index holding the commit's tree, and
// every tracked file as the index last saw it. Files are compared by their status (type, size, times,
// inode), looked at on every core; a file changed within the same tick as the index was written (racily
// clean) cannot be told apart that way and is compared by content. Any doubt answers "no": the caller
// then checks out by force. When it answers "no" for changed files, it also forgets what the
// repository's index recorded of them (in memory), so that checkout compares them by content.
class IndexStatusScan;

class IntactCheckout {
public:
    // A scan started on the clone's working tree before the repository was opened saves looking at
    // every file again; it is used only if it read the index this repository reads.
    static Result<bool, GitError> holds(git_repository* repository, const git_oid& commitId,
                                        IndexStatusScan* scan = nullptr);
};

} // namespace corvane
