// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/sources/GitError.h"
#include "Corvane/sources/Remote.h"

#include <git2.h>

#include <QString>

namespace corvane {

// Finds a configured remote the way git does (its URL with the user's url.<base>.insteadOf rules
// applied, its fetch refspecs) without libgit2 1.5.1's own lookup. That lookup matches every
// configuration entry against a regular expression to find the insteadOf rules, and leaks the match
// data of each entry that does not match: about 440 KiB per lookup and as much again per fetch of a
// looked-up remote, for good, in a long-running host. The remote made here is anonymous, with the
// rules already applied, and fetches without leaking.
class RemoteLookup {
public:
    static Result<Remote, GitError> find(git_repository* repository, const QString& name);

    // url with the longest matching url.<base>.insteadOf prefix replaced by its base, as git does.
    static QByteArray applyInsteadOf(git_config* config, const QByteArray& url);
};

} // namespace corvane
