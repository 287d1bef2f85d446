// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/CopyCommand.h"

#include <QList>

namespace corvane {

// What the updater window asks of whoever carries out the user's requests (the event handler). The
// list view controller holds it weakly.
class ThemeListViewControllerDelegate {
public:
    virtual ~ThemeListViewControllerDelegate() = default;

    // Update All (every row's command, in row order) or one row's Install/Update (just its command).
    virtual void installThemes(const QList<CopyCommand>& commands) = 0;
    // The Refresh button, or Retry in the fetch-failed alert.
    virtual void refreshThemes() = 0;
    // The Open Theme Folder button.
    virtual void openThemeDirectory() = 0;
    // Undo in the notice shown after an install batch.
    virtual void undoLastInstall() {}
};

} // namespace corvane
