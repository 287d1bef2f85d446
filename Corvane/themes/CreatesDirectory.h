// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/module/AnyError.h"
#include "Corvane/module/Result.h"

#include <QUrl>

namespace corvane {

// Makes sure a directory exists, creating missing parents too.
class CORVANE_EXPORT CreatesDirectory {
public:
    virtual ~CreatesDirectory() = default;
    virtual Result<void, AnyError> createDirectoryIfNeeded(const QUrl& directory) const = 0;
};

} // namespace corvane
