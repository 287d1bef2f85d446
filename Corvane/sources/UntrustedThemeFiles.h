// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/TextError.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>

namespace corvane {

// What the clone of a theme repository must not offer the reader. libgit2 checks links out as real
// links, so a "Themes/x.theme.json" pointing at a file of the user's would be read and shown (or
// copied into the installed themes); a FIFO would block the reading for good. Such entries fail the
// fetch with a text naming them, and nothing of the directory is read.
class UntrustedThemeFiles {
public:
    // themesDirectory: the clone's "Themes" on disk. linksAtHead: the paths (relative to the clone) of
    // links the commit itself records there; with links refused they are plain files on disk, still
    // refused. Gives the first refusal, or nothing when every theme file may be read.
    static std::optional<TextError> refusal(const QString& cloneDirectory, const QString& themesDirectory,
                                            const QStringList& linksAtHead);

    static QString linkedFileText(const QString& path);
    static QString linkedDirectoryText(const QString& path);
    static QString irregularFileText(const QString& path);
    static QString oversizedFileText(const QString& path, std::size_t size, std::size_t limit);
};

} // namespace corvane
