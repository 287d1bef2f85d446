// SPDX-License-Identifier: MIT
#include "Corvane/themes/DirectoryLister.h"

#include "Corvane/themes/FileNameEncoding.h"

namespace corvane {

Result<DirectoryEntries, DirectoryListingError> DirectoryLister::entriesInDirectory(const QUrl& directory) const
{
    return map(filesInDirectory(directory), [](const QList<QUrl>& files) {
        DirectoryEntries entries;
        entries.reserve(files.size());
        // Absolute paths: the system opens them as they are, wherever the lister found them.
        for (const QUrl& file : files)
            entries.append(FileNameEncoding::encodeOrEmpty(file.toLocalFile()), false);
        return entries;
    });
}

} // namespace corvane
