// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace corvane {

// The one file copy that installs or updates a theme: the clone's file to the installed-themes directory.
// Both ends are local paths, which is what copying uses: a comparison that offers thousands of themes
// then makes no URL at all (a URL costs more to make than the rest of a row).
struct CopyCommand {
    QString sourcePath;
    QString destinationPath;

    // The name the theme file has in the clone.
    QString sourceFileName() const { return sourcePath.mid(sourcePath.lastIndexOf(u'/') + 1); }

    bool operator==(const CopyCommand&) const = default;
};

} // namespace corvane
