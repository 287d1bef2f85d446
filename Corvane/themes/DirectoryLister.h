// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/module/Result.h"
#include "Corvane/themes/DirectoryEntries.h"
#include "Corvane/themes/DirectoryListingError.h"

#include <QList>
#include <QUrl>

namespace corvane {

// Lists the entries of one directory that are not directories, shallowly, in the platform's order.
class CORVANE_EXPORT DirectoryLister {
public:
    virtual ~DirectoryLister() = default;
    virtual Result<QList<QUrl>, DirectoryListingError> filesInDirectory(const QUrl& directory) const = 0;

    // The same listing as names relative to the directory, which is how the theme reader opens the
    // files: a URL for every entry of a large directory costs more than reading it. The default takes
    // the local path of every URL filesInDirectory gives, so a lister need only implement that.
    virtual Result<DirectoryEntries, DirectoryListingError> entriesInDirectory(const QUrl& directory) const;
};

} // namespace corvane
