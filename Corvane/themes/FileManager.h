// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/themes/CreatesDirectory.h"
#include "Corvane/themes/DirectoryLister.h"
#include "Corvane/themes/DeletesFiles.h"
#include "Corvane/themes/FileCopier.h"

#include <memory>

namespace corvane {

// The file-system operations the module needs, behind one-operation interfaces so a test can inject a
// failure. One shared instance serves the whole process; it holds no state.
class CORVANE_EXPORT FileManager final : public DirectoryLister,
                                         public CreatesDirectory,
                                         public FileCopier,
                                         public DeletesFiles {
public:
    // The process-wide instance every collaborator is handed.
    static std::shared_ptr<FileManager> shared();

    // The entries that are not directories, hidden ones included, in the order the directory lists
    // them. An entry is judged by what it is itself: a symbolic link is listed even when it leads to
    // a directory (reading it as a theme then fails, naming the file), and a link to the directory
    // itself may be given.
    Result<QList<QUrl>, DirectoryListingError> filesInDirectory(const QUrl& directory) const override;
    // The same entries as names, read straight from the system's listing.
    Result<DirectoryEntries, DirectoryListingError> entriesInDirectory(const QUrl& directory) const override;
    // Creates the directory and its missing parents; a file, or a link leading nowhere, standing in
    // the way fails, naming it.
    Result<void, AnyError> createDirectoryIfNeeded(const QUrl& directory) const override;
    // Crash-safe replace: the source goes to a temporary file beside the destination first, then
    // whatever stands at the destination (a file, a directory, a link, even one leading nowhere) goes
    // to the Trash, then the temporary file is renamed into place. Installs into one directory take
    // turns. Creates no directory.
    Result<void, AnyError> copy(const CopyCommand& command) const override;
    // Moves a file, a whole directory or a link itself to the Trash (see Trash).
    Result<void, AnyError> deleteItem(const QUrl& url) const override;
};

} // namespace corvane
