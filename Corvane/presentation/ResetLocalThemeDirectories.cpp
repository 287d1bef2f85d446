// SPDX-License-Identifier: MIT
#include "Corvane/presentation/ResetLocalThemeDirectories.h"


namespace corvane {

ResetLocalThemeDirectories::ResetLocalThemeDirectories(Configuration configuration,
                                                       std::shared_ptr<const DeletesFiles> fileDeleter,
                                                       std::shared_ptr<AsksUser> user)
    : m_configuration(std::move(configuration))
    , m_fileDeleter(std::move(fileDeleter))
    , m_user(std::move(user))
{
    handleDeletingLocalThemeRepoError = [user = m_user](const QUrl& directory) {
        if (user->showDirectoryAfterDeletingLocalRepoFailed())
            user->openDirectory(directory);
    };
    handleDeletingInstalledThemesError = [user = m_user](const QUrl& directory) {
        if (user->showDirectoryAfterDeletingInstalledThemesFailed())
            user->openDirectory(directory);
    };
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

} // namespace corvane
