// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/differences/InstallableTheme.h"
#include "Corvane/themes/Theme.h"

namespace corvane {

// An installed theme whose repository version is strictly newer.
struct UpdatedTheme final : InstallableTheme {
    struct VersionChange {
        Version from; // installed
        Version to;   // in the repository
        bool operator==(const VersionChange&) const = default;
    };

    UpdatedTheme(Theme::Identifier identifier, QStringList authors, VersionChange versionChange, CopyCommand copyCommand)
        : identifier(std::move(identifier)), authors(std::move(authors)), versionChange(versionChange)
        , copyCommand(std::move(copyCommand))
    {
    }

    Theme::Identifier identifier; // the installed theme's
    QStringList authors;          // the remote theme's
    VersionChange versionChange;
    CopyCommand copyCommand;      // overwrites the installed file where it lies

    const CopyCommand& installation() const override { return copyCommand; }

    bool operator==(const UpdatedTheme& other) const
    {
        return identifier == other.identifier && authors == other.authors && versionChange == other.versionChange
            && copyCommand == other.copyCommand;
    }
};

} // namespace corvane
