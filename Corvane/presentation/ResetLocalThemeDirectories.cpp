// SPDX-License-Identifier: MIT
#include "Corvane/presentation/ResetLocalThemeDirectories.h"

#include "Corvane/presentation/Alerts.h"

#include <QDesktopServices>

namespace corvane {

ResetLocalThemeDirectories::ResetLocalThemeDirectories(Configuration configuration,
                                                       std::shared_ptr<const DeletesFiles> fileDeleter)
    : handleDeletingLocalThemeRepoError(&ResetLocalThemeDirectories::showDeletingLocalThemeRepoError)
    , handleDeletingInstalledThemesError(&ResetLocalThemeDirectories::showDeletingInstalledThemesError)
    , m_configuration(std::move(configuration))
    , m_fileDeleter(std::move(fileDeleter))
{
}

void ResetLocalThemeDirectories::reset()
{
    // The installed themes go even when the clone could not: either one alone already helps.
    const QUrl& clone = m_configuration.localThemeRepositoryURL();
    if (!m_fileDeleter->deleteItem(clone) && handleDeletingLocalThemeRepoError)
        handleDeletingLocalThemeRepoError(clone);
    const QUrl& installed = m_configuration.installedThemeDirectory();
    if (!m_fileDeleter->deleteItem(installed) && handleDeletingInstalledThemesError)
        handleDeletingInstalledThemesError(installed);
}

void ResetLocalThemeDirectories::showDeletingLocalThemeRepoError(const QUrl& directory)
{
    if (showDeletingLocalRepoFailedAlert())
        QDesktopServices::openUrl(directory);
}

void ResetLocalThemeDirectories::showDeletingInstalledThemesError(const QUrl& directory)
{
    if (showDeletingInstalledThemesFailedAlert())
        QDesktopServices::openUrl(directory);
}

} // namespace corvane
