// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/sources/GitError.h"

#include <git2.h>

#include <QString>

namespace corvane {

// Looks at a commit before it is checked out by force into the module's own clone: a theme file larger
// than the reader's cap fails the checkout, judged by the object's size in the object database without
// inflating it. A few kilobytes of compressed zeros can stand for a gigabyte, which would otherwise land
// in the working tree (and the memory) of every clone.
//
// Then anything at a tracked path (or at a directory on the way to one) that is not a regular file, a
// directory or a link is removed: checking out opens tracked paths for writing, and opening a named
// pipe nobody reads blocks for ever. Untracked things are left alone.
class CheckoutPreparation {
public:
    // themesDirectory and suffix name the theme files, as the remote fetcher reads them.
    static Result<void, GitError> prepare(git_repository* repository, const git_oid& commit,
                                          const QString& themesDirectory, const QString& suffix);
};

} // namespace corvane
