// SPDX-License-Identifier: MIT
#include "Corvane/presentation/ThemeEntryEventHandler.h"

#include "Corvane/module/Dispatch.h"
#include "Corvane/themes/DeferredSync.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/themes/FileNameEncoding.h"
#include "Corvane/themes/SourceThemeChanged.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <sys/stat.h>

namespace corvane {

ThemeEntryEventHandler::ThemeEntryEventHandler(Configuration configuration,
                                               std::shared_ptr<ThemeEntryPresenter> presenter,
                                               std::shared_ptr<const FileCopier> fileCopier,
                                               std::shared_ptr<AsksUser> user,
                                               std::shared_ptr<const DeletesFiles> fileDeleter)
    : m_configuration(std::move(configuration))
    , m_presenter(std::move(presenter))
    , m_fileCopier(std::move(fileCopier))
    , m_fileDeleter(fileDeleter ? std::move(fileDeleter) : FileManager::shared())
    , m_user(std::move(user))
{
}

void ThemeEntryEventHandler::installThemes(const QList<CopyCommand>& commands)
{
    // While an undo runs, the rows are stale and the directory's lock is the undo's.
    if (m_batch || m_undoing)
        return;
    m_batch.emplace(commands, m_configuration.installedThemeDirectory());
    continueBatch();
}

void ThemeEntryEventHandler::continueBatch()
{
    QElapsedTimer slice;
    slice.start();
    // A handler that no shared pointer owns cannot be called back safely: it copies in one go.
    const std::weak_ptr<ThemeEntryEventHandler> handler = weak_from_this();
    const bool canSlice = !handler.expired() && QCoreApplication::instance();
    Batch& batch = *m_batch;
    while (batch.next < batch.commands.size()) {
        const CopyCommand& command = batch.commands.at(batch.next);
        struct stat existing;
        const bool replaces = ::lstat(FileNameEncoding::encodeOrEmpty(command.destinationPath).constData(), &existing) == 0;
        if (auto copied = m_fileCopier->copy(command); !copied) {
            const CopyCommand failed = command;
            const bool showedProgress = batch.showedProgress;
            QStringList written = std::move(batch.written);
            const InstallBatchSummary summary = batch.summary;
            m_batch.reset();
            reportWritten(std::move(written), summary);
            if (showedProgress)
                m_presenter->showInstallEnded();
            // The clone moved on since the list was made: nothing is wrong with the user's themes, the
            // list is stale. A fresh one shows what the repository holds now.
            if (copied.error().as<SourceThemeChanged>()) {
                m_presenter->refresh();
                return;
            }
            copyingFailed(failed, copied.error());
            return;
        }
        batch.written.append(command.destinationPath);
        ++(replaces ? batch.summary.updated : batch.summary.installed);
        if (batch.summary.total() == 1)
            batch.summary.themeName = command.sourceTheme ? command.sourceTheme->identifier.name() : command.sourceFileName();
        ++batch.next;
        if (canSlice && batch.next < batch.commands.size() && slice.elapsed() >= sliceDuration.count()) {
            // Let the window paint and show how far the batch got; the rest follows from the event loop.
            batch.showedProgress = true;
            m_presenter->showInstallProgress(batch.next, batch.commands.size());
            QTimer::singleShot(0, QCoreApplication::instance(), [handler] {
                if (const auto self = handler.lock(); self && self->m_batch)
                    self->continueBatch();
            });
            return;
        }
    }
    QStringList written = std::move(batch.written);
    const InstallBatchSummary summary = batch.summary;
    m_batch.reset();
    reportWritten(std::move(written), summary);
    m_presenter->refresh();
}

void ThemeEntryEventHandler::reportWritten(QStringList files, const InstallBatchSummary& summary) const
{
    if (files.isEmpty())
        return;
    if (installBatchEnded)
        installBatchEnded(summary);
    if (themesInstalled)
        themesInstalled(files);
}

void ThemeEntryEventHandler::undoLastInstall()
{
    if (m_batch || m_undoing)
        return;
    const QUrl directory = m_configuration.installedThemeDirectory();
    // A handler that no shared pointer owns cannot be called back safely: it undoes in one go.
    const std::weak_ptr<ThemeEntryEventHandler> handler = weak_from_this();
    if (handler.expired() || !QCoreApplication::instance()) {
        undoEnded(corvane::undoLastInstall(directory));
        return;
    }
    m_undoing = true;
    dispatchUserInitiated([handler, directory] {
        QElapsedTimer elapsed;
        elapsed.start();
        qint64 reported = -1;
        auto undone = corvane::undoLastInstall(directory, [&](qsizetype done, qsizetype total) {
            // Nothing for an undo over within a slice; after that, a report each frame or so.
            const qint64 now = elapsed.elapsed();
            if (now < sliceDuration.count() || (reported >= 0 && now - reported < 16 && done < total))
                return;
            reported = now;
            dispatchMain([handler, done, total] {
                if (const auto self = handler.lock(); self && self->m_undoing) {
                    self->m_undoShowedProgress = true;
                    self->m_presenter->showUndoProgress(done, total);
                }
            });
        });
        dispatchMain([handler, undone = std::move(undone)]() mutable {
            if (const auto self = handler.lock())
                self->undoEnded(std::move(undone));
        });
    });
}

void ThemeEntryEventHandler::undoEnded(Result<UndoneInstall, TextError> undone)
{
    const bool showedProgress = m_undoShowedProgress;
    m_undoing = false;
    m_undoShowedProgress = false;
    if (showedProgress)
        m_presenter->showInstallEnded();
    if (!undone) {
        if (m_user->openFolderAfterUndoFailed(AnyError(undone.error())))
            openThemeDirectory();
        return;
    }
    if (installUndone)
        installUndone(*undone);
    m_presenter->refresh();
}

void ThemeEntryEventHandler::copyingFailed(const CopyCommand& command, const AnyError& error)
{
    // The rest of the batch is abandoned and the list left as it is: the user decides first.
    if (!m_user->continueAfterCopyingFailed(command.sourceFileName(), error))
        resetLocalThemeDirectories().reset();
}

void ThemeEntryEventHandler::refreshThemes()
{
    m_presenter->refresh();
}

void ThemeEntryEventHandler::openThemeDirectory()
{
    m_user->openDirectory(m_configuration.installedThemeDirectory());
}

ResetLocalThemeDirectories& ThemeEntryEventHandler::resetLocalThemeDirectories()
{
    if (!m_resetLocalThemeDirectories)
        m_resetLocalThemeDirectories = std::make_unique<ResetLocalThemeDirectories>(m_configuration, m_fileDeleter, m_user);
    return *m_resetLocalThemeDirectories;
}

} // namespace corvane
