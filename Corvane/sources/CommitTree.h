// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/sources/GitError.h"
#include "Corvane/sources/GitHandles.h"

namespace corvane {

// The tree of a commit of the repository, looked up by the commit's id.
Result<TreeHandle, GitError> commitTree(git_repository* repository, const git_oid& commitId);

} // namespace corvane
