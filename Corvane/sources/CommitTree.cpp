// SPDX-License-Identifier: MIT
#include "Corvane/sources/CommitTree.h"

#include "Corvane/sources/GitLibrary.h"

namespace corvane {

Result<TreeHandle, GitError> commitTree(git_repository* repository, const git_oid& commitId)
{
    git_commit* rawCommit = nullptr;
    if (const int code = git_commit_lookup(&rawCommit, repository, &commitId); code < 0)
        return std::unexpected(makeGitError(code));
    const CommitHandle commit(rawCommit);
    git_tree* rawTree = nullptr;
    if (const int code = git_commit_tree(&rawTree, commit.get()); code < 0)
        return std::unexpected(makeGitError(code));
    return TreeHandle(rawTree);
}

} // namespace corvane
