// SPDX-License-Identifier: MIT
#include "Corvane/ui/WindowAlerts.h"

#include "Corvane/ui/AlertWindowScope.h"
#include "Corvane/ui/Alerts.h"

#include <QDesktopServices>

namespace corvane {

bool WindowAlerts::continueAfterCopyingFailed(const QString& fileName, const AnyError& error)
{
    AlertWindowScope scope(m_window);
    return showCopyingFailedAlert(fileName, error);
}

bool WindowAlerts::showDirectoryAfterDeletingLocalRepoFailed()
{
    AlertWindowScope scope(m_window);
    return showDeletingLocalRepoFailedAlert();
}

bool WindowAlerts::showDirectoryAfterDeletingInstalledThemesFailed()
{
    AlertWindowScope scope(m_window);
    return showDeletingInstalledThemesFailedAlert();
}

bool WindowAlerts::openFolderAfterUndoFailed(const AnyError& error)
{
    AlertWindowScope scope(m_window);
    return showUndoFailedAlert(error);
}

void WindowAlerts::openDirectory(const QUrl& directory)
{
    QDesktopServices::openUrl(directory);
}

} // namespace corvane
