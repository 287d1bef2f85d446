// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/ThemeEntry.h"
#include "Corvane/sources/SynchronizationProgress.h"

namespace corvane {

// Where the presenter shows the state of the list: the window, or a test's recording view.
class ShowsThemeUpdates {
public:
    virtual ~ShowsThemeUpdates() = default;
    virtual void showThemeEntries(const ThemeListState& state) = 0;

    // A batch of copies too long to run between two frames: `installed` of `total` done so far, the
    // rest following through the event loop. The view shows the progress and takes no requests until
    // showInstallEnded(); a batch that ends in one go shows nothing. The default shows nothing.
    virtual void showInstallProgress(qsizetype installed, qsizetype total) { Q_UNUSED(installed) Q_UNUSED(total) }
    // While the list loads: how far the synchronisation of the clone has got (a first clone or a long
    // fetch). A few times a second at most; the loading state stays until the rows or the failure come.
    // The default shows nothing.
    virtual void showSynchronizationProgress(const SynchronizationProgress& progress) { Q_UNUSED(progress) }
    // Undoing the last batch, when it takes longer than a slice: `undone` of `total` files put back so
    // far. As for a batch, the view takes no requests until showInstallEnded(). The default shows nothing.
    virtual void showUndoProgress(qsizetype undone, qsizetype total) { Q_UNUSED(undone) Q_UNUSED(total) }
    // The batch or undo that showed progress stopped: finished (a refresh follows at once) or failed.
    virtual void showInstallEnded() {}
};

} // namespace corvane
