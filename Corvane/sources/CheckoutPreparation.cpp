// SPDX-License-Identifier: MIT
#include "Corvane/sources/CheckoutPreparation.h"

#include "Corvane/sources/CommitTree.h"
#include "Corvane/sources/GitHandles.h"
#include "Corvane/sources/GitLibrary.h"
#include "Corvane/sources/SpecialFileSweep.h"
#include "Corvane/sources/UntrustedThemeFiles.h"
#include "Corvane/themes/ThemeDecoder.h"

#include <QDir>
#include <QFile>

namespace corvane {
namespace {

using OdbHandle = GitHandle<git_odb, git_odb_free>;
using IndexHandle = GitHandle<git_index, git_index_free>;

// Whether git tracks a path of the working tree: in the commit about to be checked out, or in the
// index of the one checked out now (a file or a directory holding files).
bool isTracked(git_tree* tree, git_index* index, const QByteArray& path)
{
    git_tree_entry* entry = nullptr;
    if (git_tree_entry_bypath(&entry, tree, path.constData()) == 0) {
        git_tree_entry_free(entry);
        return true;
    }
    size_t position = 0;
    const bool inIndex = index
        && (git_index_get_bypath(index, path.constData(), 0) || git_index_find_prefix(&position, index, (path + '/').constData()) == 0);
    git_error_clear();
    return inIndex;
}

// Whether the index already holds this very blob at this path: then it was looked at before the
// checkout that put it there, and reading its size again (which means inflating the start of a
// packed delta) is what made checking an unchanged commit slow.
bool alreadyCheckedOut(git_index* index, const QByteArray& path, const git_oid& blob)
{
    if (!index)
        return false;
    const git_index_entry* entry = git_index_get_bypath(index, path.constData(), 0);
    return entry && git_oid_equal(&entry->id, &blob);
}

Result<void, GitError> refuseOversizedThemes(git_repository* repository, git_tree* tree, git_index* checkedOut,
                                             const QString& themesDirectory, const QString& suffix)
{
    git_tree_entry* rawEntry = nullptr;
    const int found = git_tree_entry_bypath(&rawEntry, tree, themesDirectory.toUtf8().constData());
    if (found == GIT_ENOTFOUND) {
        git_error_clear();
        return {};
    }
    if (found < 0)
        return std::unexpected(makeGitError(found));
    TreeEntryHandle entry(rawEntry);
    if (git_tree_entry_type(entry.get()) != GIT_OBJECT_TREE)
        return {};
    git_tree* rawThemes = nullptr;
    if (const int code = git_tree_lookup(&rawThemes, repository, git_tree_entry_id(entry.get())); code < 0)
        return std::unexpected(makeGitError(code));
    TreeHandle themes(rawThemes);
    git_odb* rawOdb = nullptr;
    if (const int code = git_repository_odb(&rawOdb, repository); code < 0)
        return std::unexpected(makeGitError(code));
    OdbHandle odb(rawOdb);

    const QByteArray suffixBytes = suffix.toUtf8();
    QByteArray path = themesDirectory.toUtf8() + '/';
    const qsizetype directoryLength = path.size();
    const size_t count = git_tree_entrycount(themes.get());
    for (size_t index = 0; index < count; ++index) {
        const git_tree_entry* theme = git_tree_entry_byindex(themes.get(), index);
        const QByteArray name(git_tree_entry_name(theme));
        if (git_tree_entry_type(theme) != GIT_OBJECT_BLOB || !name.endsWith(suffixBytes))
            continue;
        path.truncate(directoryLength);
        path += name;
        if (alreadyCheckedOut(checkedOut, path, *git_tree_entry_id(theme)))
            continue;
        size_t size = 0;
        git_object_t type = GIT_OBJECT_INVALID;
        // Only the object's header is read: its size is known without inflating it.
        if (const int code = git_odb_read_header(&size, &type, odb.get(), git_tree_entry_id(theme)); code < 0)
            return std::unexpected(makeGitError(code));
        if (size > ThemeDecoder::maximumFileSize) {
            const QString workdir = QFile::decodeName(git_repository_workdir(repository));
            const QString path = QDir(workdir).filePath(themesDirectory + u'/' + QFile::decodeName(name));
            return std::unexpected(GitError(GIT_EINVALID, GIT_ERROR_INVALID,
                                            UntrustedThemeFiles::oversizedFileText(path, size, ThemeDecoder::maximumFileSize)));
        }
    }
    return {};
}

} // namespace

Result<void, GitError> CheckoutPreparation::prepare(git_repository* repository, const git_oid& commitId,
                                                    const QString& themesDirectory, const QString& suffix)
{
    auto looked = commitTree(repository, commitId);
    if (!looked)
        return std::unexpected(looked.error());
    TreeHandle tree = std::move(*looked);

    const char* workdir = git_repository_workdir(repository);
    IndexHandle index;
    if (workdir) {
        git_index* rawIndex = nullptr;
        if (const int code = git_repository_index(&rawIndex, repository); code < 0)
            return std::unexpected(makeGitError(code));
        index.reset(rawIndex);
    }
    if (auto refused = refuseOversizedThemes(repository, tree.get(), index.get(), themesDirectory, suffix); !refused)
        return refused;
    if (!workdir)
        return {};
    SpecialFileSweep::clearTracked(QFile::decodeName(workdir),
                                   [&](const QByteArray& path) { return isTracked(tree.get(), index.get(), path); });
    return {};
}

} // namespace corvane
