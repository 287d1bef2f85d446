// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace corvane {

// Removes named pipes, sockets and devices from the module's own clone. Opening a named pipe that
// nobody writes (or reads) blocks for ever, and libgit2 opens the repository's files, and checks files
// out, with plain blocking opens. Nothing but regular files, directories and links belongs in a clone,
// so anything else there is debris or sabotage and goes.
class SpecialFileSweep {
public:
    // The one path (not followed if a link); true if something was removed.
    static bool removeIfSpecial(const QByteArray& path);
    // Everything below directory (links not followed, other file systems' directories included), and
    // directory itself.
    static void clearBelow(const QString& directory);
};

} // namespace corvane
