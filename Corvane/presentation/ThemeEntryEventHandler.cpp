// SPDX-License-Identifier: MIT
#include "Corvane/presentation/ThemeEntryEventHandler.h"

#include "Corvane/presentation/Alerts.h"
#include "Corvane/themes/FileManager.h"

#include <QDesktopServices>

namespace corvane {

ThemeEntryEventHandler::ThemeEntryEventHandler(Configuration configuration,
                                               std::shared_ptr<ThemeEntryPresenter> presenter,
                                               std::shared_ptr<const FileCopier> fileCopier,
                                               std::shared_ptr<const DeletesFiles> fileDeleter)
    : m_configuration(std::move(configuration))
    , m_presenter(std::move(presenter))
    , m_fileCopier(std::move(fileCopier))
    , m_fileDeleter(fileDeleter ? std::move(fileDeleter) : FileManager::shared())
{
}

void ThemeEntryEventHandler::installThemes(const QList<CopyCommand>& commands)
{
    for (const CopyCommand& command : commands) {
        const auto copied = m_fileCopier->copy(command);
        if (copied)
            continue;
        // The rest of the batch is abandoned and the list left as it is: the user decides first.
        if (!showCopyingFailedAlert(command.sourceFileName(), copied.error()))
            resetLocalThemeDirectories().reset();
        return;
    }
    m_presenter->refresh();
}

void ThemeEntryEventHandler::refreshThemes()
{
    m_presenter->refresh();
}

void ThemeEntryEventHandler::openThemeDirectory()
{
    QDesktopServices::openUrl(m_configuration.installedThemeDirectory());
}

ResetLocalThemeDirectories& ThemeEntryEventHandler::resetLocalThemeDirectories()
{
    if (!m_resetLocalThemeDirectories)
        m_resetLocalThemeDirectories = std::make_unique<ResetLocalThemeDirectories>(m_configuration, m_fileDeleter);
    return *m_resetLocalThemeDirectories;
}

} // namespace corvane
