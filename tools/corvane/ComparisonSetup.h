// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/FindThemeDifferences.h"
#include "Corvane/module/Configuration.h"
#include "Corvane/presentation/SkippedVersions.h"
#include "Corvane/presentation/ThemeEntry.h"
#include "Corvane/sources/SynchronizationProgress.h"

#include <QList>
#include <QString>

#include <memory>

namespace corvane::cli {

// The comparison behind the updater window, built from the three locations the way the window's
// assembly builds it: a synchronised clone and the installed-themes directory, each read by a reader
// of its own.
// The clone's synchronisation reports to progress, when given.
std::shared_ptr<FindThemeDifferences> makeThemeDifferenceFinder(const Configuration& configuration,
                                                                ReportsSynchronizationProgress progress = {});

// A difference together with the row the window shows for it.
struct ThemeRow {
    ThemeDifference difference;
    ThemeEntry entry;

    bool isUpdate() const { return std::holds_alternative<UpdatedTheme>(difference); }
};

// Runs the comparison on the calling thread (a command has nothing else to do meanwhile). On failure
// the text is exactly what the window's alert would show. The synchronisation's progress shows on
// stderr when it is a terminal.
Result<QList<ThemeRow>, QString> findThemeRows(const Configuration& configuration);

// Leaves out the rows of versions the user skipped, as the window does.
void removeSkipped(QList<ThemeRow>& rows, const SkippedVersions& skipped);

} // namespace corvane::cli
