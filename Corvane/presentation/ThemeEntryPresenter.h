// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include "Corvane/differences/FindsThemeDifferences.h"
#include "Corvane/presentation/ShowsThemeUpdates.h"
#include "Corvane/presentation/ThemeEntry.h"

#include <memory>

namespace corvane {

// Drives what the updater window shows: on every refresh the loading state, then the rows (or the
// failure) of a fresh comparison. Must be owned by a std::shared_ptr: a comparison's callback holds
// the presenter only weakly, so a window released mid-comparison drops the late result unseen.
class CORVANE_EXPORT ThemeEntryPresenter : public std::enable_shared_from_this<ThemeEntryPresenter> {
public:
    ThemeEntryPresenter(std::shared_ptr<FindsThemeDifferences> themeDifferenceFinder,
                        std::shared_ptr<ShowsThemeUpdates> view);

    // Main thread only. A refresh asked for while a comparison runs does not start a second one
    // beside it: at most one more comparison follows the running one, and only its result is shown.
    void refresh();

    // Hands a long install batch's progress, and its end, to the view.
    void showInstallProgress(qsizetype installed, qsizetype total);
    void showUndoProgress(qsizetype undone, qsizetype total);
    void showInstallEnded();
    // Main thread only. Shown while a comparison runs; a report that arrives after it ended is stale.
    void showSynchronizationProgress(const SynchronizationProgress& progress);

    // One display row per difference, as the list shows it.
    static ThemeEntry makeThemeEntry(const ThemeDifference& difference);

private:
    void startComparison();
    void comparisonFinished(ThemeDifferencesResult result);

    const std::shared_ptr<FindsThemeDifferences> m_themeDifferenceFinder;
    const std::shared_ptr<ShowsThemeUpdates> m_view;
    bool m_comparisonRunning = false;
    bool m_refreshPending = false;
};

} // namespace corvane
