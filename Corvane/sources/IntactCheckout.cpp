// SPDX-License-Identifier: MIT
#include "Corvane/sources/IntactCheckout.h"

#include "Corvane/sources/CommitTree.h"
#include "Corvane/sources/GitHandles.h"
#include "Corvane/sources/GitLibrary.h"
#include "Corvane/themes/Descriptor.h"

#include <QByteArray>

#include <algorithm>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace corvane {
namespace {

using IndexHandle = GitHandle<git_index, git_index_free>;
using DiffHandle = GitHandle<git_diff, git_diff_free>;

enum class FileState { same, changed, racy };

bool sameTime(const git_index_time& recorded, const struct timespec& actual)
{
    return recorded.seconds == int32_t(actual.tv_sec) && recorded.nanoseconds == uint32_t(actual.tv_nsec);
}

bool notBefore(const git_index_time& time, const struct timespec& than)
{
    return int64_t(time.seconds) > int64_t(than.tv_sec)
        || (int64_t(time.seconds) == int64_t(than.tv_sec) && time.nanoseconds >= uint32_t(than.tv_nsec));
}

// One tracked file against what the index recorded of it when it was last written. The index keeps
// sizes and inodes in 32 bits, so only those bits are compared.
FileState compare(int workdir, const git_index_entry& entry, const struct timespec& indexWritten)
{
    // Links are checked out as plain files here, and nested repositories are not ours: rather check out.
    if (entry.mode != GIT_FILEMODE_BLOB && entry.mode != GIT_FILEMODE_BLOB_EXECUTABLE)
        return FileState::changed;
    struct stat status {};
    if (::fstatat(workdir, entry.path, &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode))
        return FileState::changed;
    const bool executable = (status.st_mode & S_IXUSR) != 0;
    if (executable != (entry.mode == GIT_FILEMODE_BLOB_EXECUTABLE) || entry.file_size != uint32_t(status.st_size)
        || entry.ino != uint32_t(status.st_ino) || !sameTime(entry.mtime, status.st_mtim)
        || !sameTime(entry.ctime, status.st_ctim))
        return FileState::changed;
    // Changed in the same tick as the index was written: same status, possibly other bytes.
    return notBefore(entry.mtime, indexWritten) ? FileState::racy : FileState::same;
}

struct Comparison {
    std::vector<const git_index_entry*> changed;
    std::vector<const git_index_entry*> racy;
};

// Compares every entry, half of them on a second thread.
Comparison compareAll(int workdir, const std::vector<const git_index_entry*>& entries, const struct timespec& indexWritten)
{
    const auto compareRange = [&](std::size_t begin, std::size_t end, Comparison& out) {
        for (std::size_t index = begin; index < end; ++index) {
            switch (compare(workdir, *entries[index], indexWritten)) {
            case FileState::same:
                break;
            case FileState::racy:
                out.racy.push_back(entries[index]);
                break;
            case FileState::changed:
                out.changed.push_back(entries[index]);
                break;
            }
        }
    };
    // A thread costs tens of microseconds; below a few hundred files one is quicker.
    const bool split = entries.size() >= 512 && std::thread::hardware_concurrency() > 1;
    const std::size_t middle = split ? entries.size() / 2 : entries.size();
    Comparison first, second;
    std::thread other;
    if (split)
        other = std::thread(compareRange, middle, entries.size(), std::ref(second));
    compareRange(0, middle, first);
    if (other.joinable())
        other.join();
    first.changed.insert(first.changed.end(), second.changed.begin(), second.changed.end());
    first.racy.insert(first.racy.end(), second.racy.begin(), second.racy.end());
    return first;
}

// Whether a racily clean file's content is what the index says, through the same filters a checkout
// writes it with.
bool contentMatches(git_repository* repository, const char* workdirPath, const git_index_entry& entry)
{
    const QByteArray path = QByteArray(workdirPath) + entry.path;
    git_oid content;
    if (git_repository_hashfile(&content, repository, path.constData(), GIT_OBJECT_BLOB, entry.path) < 0) {
        git_error_clear();
        return false;
    }
    return git_oid_equal(&content, &entry.id) != 0;
}

// The checkout trusts the index's record of a file whose size and modification time look unchanged,
// and a hand edit may have put the time back. Forgetting the record of every file found changed makes
// the checkout compare those by content. Only the repository's index in memory changes: the checkout
// keeps it as long as the file on disk has not changed, and writes it anew.
Result<void, GitError> forgetRecordedStatus(git_index* index, const std::vector<const git_index_entry*>& changed)
{
    std::vector<git_index_entry> forgotten;
    forgotten.reserve(changed.size());
    for (const git_index_entry* entry : changed) {
        git_index_entry copy = *entry;
        copy.ctime = {};
        copy.mtime = {};
        copy.file_size = 0;
        forgotten.push_back(copy);
    }
    // Entries were pointers into the index: copy them all before the first change moves them.
    for (const git_index_entry& entry : forgotten) {
        if (const int code = git_index_add(index, &entry); code < 0)
            return std::unexpected(makeGitError(code));
    }
    return {};
}

Result<bool, GitError> headIsDetachedAt(git_repository* repository, const git_oid& commitId)
{
    const int detached = git_repository_head_detached(repository);
    if (detached < 0)
        return std::unexpected(makeGitError(detached));
    if (detached == 0)
        return false;
    git_oid head;
    if (const int code = git_reference_name_to_id(&head, repository, "HEAD"); code < 0)
        return std::unexpected(makeGitError(code));
    return git_oid_equal(&head, &commitId) != 0;
}

Result<bool, GitError> indexHoldsTree(git_repository* repository, git_index* index, const git_oid& commitId)
{
    if (git_index_has_conflicts(index))
        return false;
    auto looked = commitTree(repository, commitId);
    if (!looked)
        return std::unexpected(looked.error());
    TreeHandle tree = std::move(*looked);
    git_diff* rawDiff = nullptr;
    git_diff_options options = GIT_DIFF_OPTIONS_INIT;
    if (const int code = git_diff_tree_to_index(&rawDiff, repository, tree.get(), index, &options); code < 0)
        return std::unexpected(makeGitError(code));
    return git_diff_num_deltas(DiffHandle(rawDiff).get()) == 0;
}

} // namespace

Result<bool, GitError> IntactCheckout::holds(git_repository* repository, const git_oid& commitId)
{
    const char* workdirPath = git_repository_workdir(repository);
    if (!workdirPath)
        return false;
    if (auto detached = headIsDetachedAt(repository, commitId); !detached || !*detached)
        return detached;

    // The index file's own time, before its entries are read: an entry written in that tick or later
    // may be racily clean.
    struct stat indexStatus {};
    const QByteArray indexPath = QByteArray(git_repository_path(repository)) + "index";
    if (::stat(indexPath.constData(), &indexStatus) != 0)
        return false;
    git_index* rawIndex = nullptr;
    if (const int code = git_repository_index(&rawIndex, repository); code < 0)
        return std::unexpected(makeGitError(code));
    IndexHandle index(rawIndex);
    if (const int code = git_index_read(index.get(), 0); code < 0)
        return std::unexpected(makeGitError(code));
    if (auto holdsTree = indexHoldsTree(repository, index.get(), commitId); !holdsTree || !*holdsTree)
        return holdsTree;

    const Descriptor workdir(::open(workdirPath, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (workdir.get() < 0)
        return false;
    std::vector<const git_index_entry*> entries;
    const std::size_t count = git_index_entrycount(index.get());
    entries.reserve(count);
    for (std::size_t position = 0; position < count; ++position)
        entries.push_back(git_index_get_byindex(index.get(), position));
    Comparison comparison = compareAll(workdir.get(), entries, indexStatus.st_mtim);
    for (const git_index_entry* entry : comparison.racy) {
        if (!contentMatches(repository, workdirPath, *entry))
            comparison.changed.push_back(entry);
    }
    if (comparison.changed.empty())
        return true;
    if (auto forgotten = forgetRecordedStatus(index.get(), comparison.changed); !forgotten)
        return std::unexpected(forgotten.error());
    return false;
}

} // namespace corvane
