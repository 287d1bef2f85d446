// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/sources/LocalThemeFetchingError.h"
#include "Corvane/themes/StoredTheme.h"

#include <QList>

namespace corvane {

// Yields the installed themes, sorted by name.
class FetchesLocalThemes {
public:
    virtual ~FetchesLocalThemes() = default;
    virtual Result<QList<LocalTheme>, LocalThemeFetchingError> fetchLocalThemes() = 0;
};

} // namespace corvane
