// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/AnyError.h"

namespace corvane {

// A reading of theme files failed: wraps a DirectoryListingError, a JSONDecodingError or, from the
// fetchers, a text error.
struct ThemeDecodingError {
    AnyError error;

    // "Theme decoding failed: " and the wrapped error's description.
    QString errorDescription() const;
};

} // namespace corvane
