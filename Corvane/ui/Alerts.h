// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/AnyError.h"

#include <QString>

class QLabel;

namespace corvane {

// The four alerts through which failures reach the user. Each runs application-modally on the main
// thread, blocks until answered and turns the answer into a yes/no; the caller decides what it means.

// "Update Error". True for "Retry" (or any answer but "Ignore").
bool showFetchFailedAlert(const AnyError& error);
// "Copying Theme Failed", naming the file. True for "Continue"; false for "Delete Local Themes" or
// any other answer.
bool showCopyingFailedAlert(const QString& fileName, const AnyError& error);
// True for "Show Directory" (or any answer but "Ignore").
bool showDeletingLocalRepoFailedAlert();
bool showDeletingInstalledThemesFailedAlert();
// "Undo Failed", with the reason (which names the file). True for "Open Theme Folder".
bool showUndoFailedAlert(const AnyError& error);

// The alerts' detail: plain, selectable, secondary-coloured small text wrapped at 300 pixels and sized
// to its text. The caller owns the new label.
QLabel* makeErrorDetailField(const AnyError& error);

} // namespace corvane
