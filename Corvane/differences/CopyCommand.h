// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/themes/Theme.h"

#include <QString>

#include <optional>

namespace corvane {

// The one file copy that installs or updates a theme: the clone's file to the installed-themes directory.
// Both ends are local paths, which is what copying uses: a comparison that offers thousands of themes
// then makes no URL at all (a URL costs more to make than the rest of a row).
struct CopyCommand {
    // The theme the comparison read from the source file.
    struct SourceTheme {
        Theme::Identifier identifier;
        Version version;
        bool operator==(const SourceTheme&) const = default;
    };

    QString sourcePath;
    QString destinationPath;
    // When present, the copy installs exactly this theme or nothing: the clone may have been
    // synchronised again since the list was made (by the host's repository check or another process),
    // and a row must never install a version other than the one it showed.
    std::optional<SourceTheme> sourceTheme = std::nullopt;

    // The name the theme file has in the clone.
    QString sourceFileName() const { return sourcePath.mid(sourcePath.lastIndexOf(u'/') + 1); }

    bool operator==(const CopyCommand&) const = default;
};

} // namespace corvane
