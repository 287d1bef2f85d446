// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/AnyError.h"

#include <QString>
#include <QUrl>

namespace corvane {

// What the event handler and the reset need from the user beyond the list: the alerts that interrupt
// an install or a reset, and the desktop's file browser. The window's side answers with real modal
// alerts; the core stays free of widgets.
class AsksUser {
public:
    virtual ~AsksUser() = default;

    // "Copying Theme Failed", naming the file. True for "Continue"; false for "Delete Local Themes".
    virtual bool continueAfterCopyingFailed(const QString& fileName, const AnyError& error) = 0;
    // The clone or the installed-themes directory could not go to the Trash. True for "Show Directory".
    virtual bool showDirectoryAfterDeletingLocalRepoFailed() = 0;
    virtual bool showDirectoryAfterDeletingInstalledThemesFailed() = 0;
    // "Undo Failed", with the reason. True for "Open Theme Folder".
    virtual bool openFolderAfterUndoFailed(const AnyError& error) = 0;
    // Opens a local directory in the desktop's file browser.
    virtual void openDirectory(const QUrl& directory) = 0;
};

} // namespace corvane
