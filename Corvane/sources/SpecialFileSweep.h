// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace corvane {

// Removes named pipes, sockets and devices from the module's own clone. Opening a named pipe that
// nobody writes (or reads) blocks for ever, and libgit2 opens the repository's files, and checks files
// out, with plain blocking opens. Nothing but regular files, directories and links belongs in a clone,
// so anything else there is debris or sabotage and goes.
class SpecialFileSweep {
public:
    // The one path (not followed if a link); true if something was removed.
    static bool removeIfSpecial(const QByteArray& path);
    // Everything below directory (links not followed), and directory itself: for the repository's own
    // files, where nothing is anyone else's.
    static void clearBelow(const QString& directory);
    // In a working tree, only what git tracks: isTracked answers for a path relative to workTree
    // ("Themes", "Themes/Dusk.theme.json"); untracked directories are not entered and untracked things
    // are left alone. The repository's own directory ".git" is skipped.
    static void clearTracked(const QString& workTree, const std::function<bool(const QByteArray&)>& isTracked);
};

} // namespace corvane
