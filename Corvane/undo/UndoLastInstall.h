// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/module/Result.h"
#include "Corvane/module/TextError.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <functional>

namespace corvane {

// What undoing an install batch did to each file, in the order it did it: a file the batch wrote went
// to the Trash, a file it had replaced came back to its place (both, for an update, in that order).
struct UndoneFile {
    enum class Change { movedToTrash, restored };
    Change change;
    QString path;
};
using UndoneInstall = QList<UndoneFile>;

// Undoes the last install batch made in an installed-themes directory, by the window, a host or the
// command-line tool, from the record the batch left beside the themes. Everything is checked before
// anything moves: a file the batch wrote must still hold the very bytes it wrote, and each file it
// replaced must still lie in the Trash; otherwise nothing changes and the message names the file.
// The record is consumed: a second undo finds nothing to undo. Installs into the directory wait
// meanwhile, and a batch of thousands takes well under a second or two.
// progress hears how many of the files have been put back so far, on the thread the undo runs on: 0
// while they are checked, then up to all of them.
using ReportsUndoProgress = std::function<void(qsizetype undone, qsizetype total)>;
CORVANE_EXPORT Result<UndoneInstall, TextError> undoLastInstall(const QUrl& installedDirectory,
                                                                const ReportsUndoProgress& progress = {});

} // namespace corvane
