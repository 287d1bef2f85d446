// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/themes/Theme.h"

#include <QString>

namespace corvane {

// A decoded theme with the file it was read from.
struct StoredTheme {
    // The file's local path: a URL for each of thousands of files read would cost more than reading
    // them, and copying and showing a theme need only the path.
    QString path;
    Theme theme;
};

// A theme file of the local clone of the remote repository.
struct RemoteTheme {
    StoredTheme theme;
};

// A theme file of the installed-themes directory.
struct LocalTheme {
    StoredTheme theme;
};

} // namespace corvane
