#pragma once

#include "Corvane/themes/Theme.h"

#include <QUrl>

namespace corvane {

// A decoded theme with the file it was read from.
struct StoredTheme {
    QUrl url;
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
