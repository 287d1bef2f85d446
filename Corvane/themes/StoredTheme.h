#pragma once

#include "Corvane/themes/LocalFileURL.h"
#include "Corvane/themes/Theme.h"

#include <QUrl>

namespace corvane {

// A decoded theme with the file it was read from.
struct StoredTheme {
    // The file's local path. Its URL is made only when asked for: a reading of thousands of themes
    // needs the URLs of just the few that get installed.
    QString path;
    Theme theme;

    QUrl url() const { return localFileURL(path); }
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
