// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QUrl>

namespace corvane {

// What an install killed half-way leaves behind, and its removal. An install writes the new theme
// file to a hidden temporary file beside its destination (named with temporaryPrefix) and moves the
// file it replaces to the Trash; a kill can leave the temporary file, or an info file in the Trash
// whose item never arrived.
class InstallLeftovers {
public:
    static constexpr QByteArrayView temporaryPrefix = ".corvane-install-";

    // Removes the leftovers of installs into `directory` that are no longer running: the temporary
    // files and orphan Trash info files older than the directory's install lock, taken without
    // waiting. When an install holds the lock, nothing is removed now; a later call does it.
    static void removeFrom(const QUrl& directory);
};

} // namespace corvane
