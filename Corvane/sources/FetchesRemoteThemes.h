// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/sources/RemoteThemeFetchingError.h"
#include "Corvane/themes/StoredTheme.h"

#include <QList>

namespace corvane {

// Yields the themes the remote repository publishes, sorted by name.
class FetchesRemoteThemes {
public:
    virtual ~FetchesRemoteThemes() = default;
    virtual Result<QList<RemoteTheme>, RemoteThemeFetchingError> fetchRemoteThemes() = 0;
};

} // namespace corvane
