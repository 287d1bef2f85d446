// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/sources/GitError.h"

#include <git2.h>

#include <QString>

namespace corvane {

// Makes the module's own clone safe to check a commit out into by force, before anything is written.
//
// A theme file of the commit larger than the reader's cap fails the checkout, judged by the object's
// size in the object database without inflating it: a few kilobytes of compressed zeros can stand for
// a gigabyte, which would otherwise land in the working tree of every clone.
//
// Anything at a path the commit or the index tracks (or at a directory on the way to it) that is not a
// regular file, a directory or a link is removed: checking out opens tracked paths for writing, and
// opening a named pipe nobody reads blocks for ever. The clone is the module's own; such a thing can
// only be debris or sabotage.
class CheckoutPreparation {
public:
    // themesDirectory and suffix name the theme files, as the remote fetcher reads them.
    static Result<void, GitError> prepare(git_repository* repository, const git_oid& commit,
                                          const QString& themesDirectory, const QString& suffix);
};

} // namespace corvane
