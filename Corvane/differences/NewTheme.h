// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/differences/InstallableTheme.h"
#include "Corvane/themes/Theme.h"

namespace corvane {

// A remote theme that no installed theme matches.
struct NewTheme final : InstallableTheme {
    NewTheme(QString name, Theme::Style style, QStringList authors, Version version, CopyCommand copyCommand)
        : name(std::move(name)), style(style), authors(std::move(authors)), version(version)
        , copyCommand(std::move(copyCommand))
    {
    }

    QString name;
    Theme::Style style;
    QStringList authors;
    Version version;
    CopyCommand copyCommand;

    const CopyCommand& installation() const override { return copyCommand; }

    bool operator==(const NewTheme& other) const
    {
        return Theme::Identifier(name, style) == Theme::Identifier(other.name, other.style)
            && authors == other.authors && version == other.version && copyCommand == other.copyCommand;
    }
};

} // namespace corvane
