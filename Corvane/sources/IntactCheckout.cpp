// SPDX-License-Identifier: MIT
#include "Corvane/sources/IntactCheckout.h"

#include "Corvane/sources/CommitTree.h"
#include "Corvane/sources/GitHandles.h"
#include "Corvane/sources/GitLibrary.h"
#include "Corvane/sources/IndexStatusScan.h"
#include "Corvane/sources/TrackedFileStatus.h"
#include "Corvane/themes/Descriptor.h"

#include <QByteArray>

#include <algorithm>
#include <climits>
#include <cstring>
#include <optional>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace corvane {
namespace {

using IndexHandle = GitHandle<git_index, git_index_free>;
using DiffHandle = GitHandle<git_diff, git_diff_free>;

RecordedFileStatus recordedStatus(const git_index_entry& entry)
{
    return {entry.mode,          entry.file_size,      entry.ino,           entry.mtime.seconds,
            entry.mtime.nanoseconds, entry.ctime.seconds, entry.ctime.nanoseconds};
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
            switch (compareTrackedFile(workdir, entries[index]->path, recordedStatus(*entries[index]), indexWritten)) {
            case TrackedFileState::same:
                break;
            case TrackedFileState::racy:
                out.racy.push_back(entries[index]);
                break;
            case TrackedFileState::changed:
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

bool sameFile(const struct stat& one, const struct stat& other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino && one.st_size == other.st_size
        && one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec
        && one.st_ctim.tv_sec == other.st_ctim.tv_sec && one.st_ctim.tv_nsec == other.st_ctim.tv_nsec;
}

// The scan's outcome if it read the index file that is there now, in the same working tree.
const IndexStatusScan::Outcome* currentOutcome(IndexStatusScan* scan, const char* workdirPath, const QByteArray& indexPath)
{
    if (!scan || scan->workdir() + '/' != QByteArray(workdirPath))
        return nullptr;
    const IndexStatusScan::Outcome* outcome = scan->finish();
    struct stat now {};
    if (!outcome || ::stat(indexPath.constData(), &now) != 0 || !sameFile(now, outcome->index))
        return nullptr;
    return outcome;
}

// Walks a tree depth first, in the order the index lists paths, and matches each file against the
// next entry of the index.
class TreeAgainstIndex {
public:
    TreeAgainstIndex(git_repository* repository, const std::vector<IndexStatusScan::Entry>& entries)
        : m_repository(repository), m_entries(entries)
    {
    }

    bool matches(const git_tree* tree)
    {
        QByteArray prefix;
        return matches(tree, prefix) && m_next == m_entries.size();
    }

private:
    bool matches(const git_tree* tree, QByteArray& prefix)
    {
        const std::size_t count = git_tree_entrycount(tree);
        for (std::size_t position = 0; position < count; ++position) {
            const git_tree_entry* item = git_tree_entry_byindex(tree, position);
            const qsizetype prefixLength = prefix.size();
            prefix += git_tree_entry_name(item);
            // No checked-out file has a longer path; a crafted tree nested deeper is left to the full
            // comparison rather than followed level by level on this thread's stack.
            if (prefix.size() >= PATH_MAX)
                return false;
            bool same;
            if (git_tree_entry_type(item) == GIT_OBJECT_TREE) {
                git_tree* rawSubtree = nullptr;
                if (git_tree_lookup(&rawSubtree, m_repository, git_tree_entry_id(item)) < 0) {
                    git_error_clear(); // the full comparison meets the same failure and reports it
                    return false;
                }
                const TreeHandle subtree(rawSubtree);
                prefix += '/';
                same = matches(subtree.get(), prefix);
            } else {
                same = matchesNextEntry(item, prefix);
            }
            if (!same)
                return false;
            prefix.truncate(prefixLength);
        }
        return true;
    }

    bool matchesNextEntry(const git_tree_entry* item, const QByteArray& path)
    {
        if (m_next == m_entries.size())
            return false;
        const IndexStatusScan::Entry& entry = m_entries[m_next++];
        return entry.stage == 0 && entry.recorded.mode == uint32_t(git_tree_entry_filemode(item))
            && std::memcmp(entry.id, git_tree_entry_id(item)->id, GIT_OID_RAWSZ) == 0 && path == entry.path;
    }

    git_repository* m_repository;
    const std::vector<IndexStatusScan::Entry>& m_entries;
    std::size_t m_next = 0;
};

// The common case answered without libgit2's index, whose reading (checksum, an allocation per entry)
// and comparison with the tree cost more than everything else that is left: the scan found every
// file as recorded, and the index it read lists exactly the commit's tree. Anything else is left to
// the full comparison.
bool intactByScan(git_repository* repository, const git_oid& commitId, const IndexStatusScan::Outcome& outcome,
                  const char* workdirPath)
{
    if (!outcome.changed.empty())
        return false;
    auto looked = commitTree(repository, commitId);
    if (!looked) // the full comparison looks it up again and reports the failure
        return false;
    if (!TreeAgainstIndex(repository, outcome.entries).matches(looked->get()))
        return false;
    for (std::size_t position : outcome.racy) {
        const IndexStatusScan::Entry& entry = outcome.entries[position];
        const QByteArray path = QByteArray(workdirPath) + entry.path;
        git_oid content;
        if (git_repository_hashfile(&content, repository, path.constData(), GIT_OBJECT_BLOB, entry.path) < 0) {
            git_error_clear();
            return false;
        }
        if (std::memcmp(content.id, entry.id, GIT_OID_RAWSZ) != 0)
            return false;
    }
    return true;
}

// The scan's findings as entries of the index libgit2 read.
std::optional<Comparison> scanned(const IndexStatusScan::Outcome* outcome, git_index* index)
{
    if (!outcome || outcome->entries.size() != git_index_entrycount(index))
        return std::nullopt;
    Comparison comparison;
    for (auto [positions, found] :
         {std::pair{&outcome->changed, &comparison.changed}, {&outcome->racy, &comparison.racy}}) {
        for (std::size_t position : *positions) {
            const git_index_entry* entry = git_index_get_bypath(index, outcome->entries[position].path, 0);
            if (!entry)
                return std::nullopt;
            found->push_back(entry);
        }
    }
    return comparison;
}

} // namespace

Result<bool, GitError> IntactCheckout::holds(git_repository* repository, const git_oid& commitId, IndexStatusScan* scan)
{
    const char* workdirPath = git_repository_workdir(repository);
    if (!workdirPath)
        return false;
    if (auto detached = headIsDetachedAt(repository, commitId); !detached || !*detached)
        return detached;

    const QByteArray indexPath = QByteArray(git_repository_path(repository)) + "index";
    const IndexStatusScan::Outcome* outcome = currentOutcome(scan, workdirPath, indexPath);
    if (outcome && intactByScan(repository, commitId, *outcome, workdirPath))
        return true;

    // The index file's own time, before its entries are read: an entry written in that tick or later
    // may be racily clean.
    struct stat indexStatus {};
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

    // The scan still saves looking at every file again if libgit2 read the same index.
    struct stat indexRead {};
    if (outcome
        && (!sameFile(outcome->index, indexStatus) || ::stat(indexPath.constData(), &indexRead) != 0
            || !sameFile(indexRead, indexStatus)))
        outcome = nullptr;
    std::optional<Comparison> found = scanned(outcome, index.get());
    if (!found) {
        const Descriptor workdir(::open(workdirPath, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (workdir.get() < 0)
            return false;
        std::vector<const git_index_entry*> entries;
        const std::size_t count = git_index_entrycount(index.get());
        entries.reserve(count);
        for (std::size_t position = 0; position < count; ++position)
            entries.push_back(git_index_get_byindex(index.get(), position));
        found = compareAll(workdir.get(), entries, indexStatus.st_mtim);
    }
    Comparison& comparison = *found;
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
