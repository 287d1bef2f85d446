// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include "Corvane/module/AnyError.h"
#include "Corvane/module/Result.h"

#include <QUrl>

namespace corvane {

// Removes a file or directory by moving it to the Trash, never for good.
class CORVANE_EXPORT DeletesFiles {
public:
    virtual ~DeletesFiles() = default;
    virtual Result<void, AnyError> deleteItem(const QUrl& url) const = 0;
};

} // namespace corvane
