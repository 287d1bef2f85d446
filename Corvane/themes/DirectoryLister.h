#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/module/Result.h"
#include "Corvane/themes/DirectoryListingError.h"

#include <QList>
#include <QUrl>

namespace corvane {

// Lists the entries of one directory that are not directories, shallowly, in the platform's order.
class CORVANE_EXPORT DirectoryLister {
public:
    virtual ~DirectoryLister() = default;
    virtual Result<QList<QUrl>, DirectoryListingError> filesInDirectory(const QUrl& directory) const = 0;
};

} // namespace corvane
