#pragma once

#include <QUrl>

namespace corvane {

// The one file copy that installs or updates a theme: the clone's file to the installed-themes directory.
struct CopyCommand {
    QUrl sourceURL;
    QUrl destinationURL;

    bool operator==(const CopyCommand&) const = default;
};

} // namespace corvane
