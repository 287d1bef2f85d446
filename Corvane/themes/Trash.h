// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/module/TextError.h"

#include <QByteArray>

#include <ctime>

namespace corvane {

// The freedesktop Trash, written by hand: Qt's own move to the Trash gives up on a fresh account
// whose data home does not exist yet, moves nothing across file systems, and leaves an info file
// without its item when the process dies between the two steps.
//
// An item goes to the user's Trash ($XDG_DATA_HOME/Trash, the data home and the Trash created as
// needed, mode 0700) when that lies on the item's file system, else to the Trash at the top of the
// item's own mount ("<top>/.Trash/<uid>" under a sticky, real ".Trash" directory, otherwise
// "<top>/.Trash-<uid>"). Its info file is made first, which reserves the name against every other
// program using the same Trash, and it appears whole under that name (written unnamed, then linked
// in); the item is then renamed next to it, and the info file is removed again when that fails. A
// kill between the two steps leaves an info file without its item, which removeOrphanInfoFiles
// clears later. Paths are the system's bytes.
class Trash {
public:
    // Moves a file, a directory or a symbolic link itself (never what it points to). Gives where the
    // item now lies in the Trash's "files" folder; its info file is infoFileOf that path.
    static Result<QByteArray, TextError> moveItem(const QByteArray& path);

    // The info file that belongs to an item in a Trash's "files" folder.
    static QByteArray infoFileOf(const QByteArray& trashedItem);

    // Removes info files that name an item of `directory` but whose item never arrived (the process
    // moving it died in between), when they are not newer than `before`. Only the Trashes items of
    // `directory` would go to are looked at, and nothing is created.
    static void removeOrphanInfoFiles(const QByteArray& directory, const timespec& before);
};

} // namespace corvane
