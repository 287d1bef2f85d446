// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "Commands.h"
#include "OutputField.h"

#include "Corvane/undo/UndoLastInstall.h"

namespace corvane::cli {

int runUndo(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("undo"), QStringLiteral("--installed DIR"),
        QStringLiteral("Undoes the last install batch made in the installed-themes directory, by the updater "
                       "window, a host or corvane install: each file it wrote goes to the Trash (\"trashed PATH\") "
                       "and each file it replaced comes back out of the Trash (\"restored PATH\"). When a file "
                       "changed since, or a replaced file is no longer in the Trash, nothing is changed."));
    commandLine.addLocations(false, false, true);
    if (auto status = commandLine.parse(arguments))
        return *status;
    if (!commandLine.parser().positionalArguments().isEmpty())
        return commandLine.usageError(QStringLiteral("undo takes no theme names"));

    const auto undone = undoLastInstall(commandLine.installed());
    if (!undone) {
        printError(undone.error().errorDescription());
        return failed;
    }
    // In the order of the moves: the batch's last file first.
    for (const UndoneFile& file : *undone) {
        const bool restored = file.change == UndoneFile::Change::restored;
        printOut((restored ? QStringLiteral("restored %1") : QStringLiteral("trashed %1")).arg(escapeField(file.path)));
    }
    return done;
}

} // namespace corvane::cli
