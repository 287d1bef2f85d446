// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include "Corvane/module/Configuration.h"
#include "Corvane/presentation/AsksUser.h"
#include "Corvane/presentation/InstallBatchSummary.h"
#include "Corvane/presentation/ResetLocalThemeDirectories.h"
#include "Corvane/presentation/ThemeEntryPresenter.h"
#include "Corvane/presentation/ThemeListViewControllerDelegate.h"
#include "Corvane/themes/DeferredSync.h"
#include "Corvane/themes/DeletesFiles.h"
#include "Corvane/themes/FileCopier.h"
#include "Corvane/undo/InstallRecord.h"
#include "Corvane/undo/UndoLastInstall.h"

#include <QList>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace corvane {

// Carries out what the user asks for in the updater window: installing, refreshing, opening the
// installed-themes directory, and, after a failed copy, starting over with empty local directories.
// Main thread only. Copies run on the main thread, in slices between which the window paints and shows
// the batch's progress, so a batch of thousands never freezes it; a batch that fits in one slice is
// done before installThemes returns. Alerts are synchronous.
class CORVANE_EXPORT ThemeEntryEventHandler final : public ThemeListViewControllerDelegate,
                                     public std::enable_shared_from_this<ThemeEntryEventHandler> {
public:
    // user answers the alerts and opens directories; fileDeleter is what the reset object, made on first
    // use, moves directories to the Trash with.
    ThemeEntryEventHandler(Configuration configuration, std::shared_ptr<ThemeEntryPresenter> presenter,
                           std::shared_ptr<const FileCopier> fileCopier, std::shared_ptr<AsksUser> user,
                           std::shared_ptr<const DeletesFiles> fileDeleter = nullptr);

    // How long one slice of copies may hold the main thread.
    static constexpr std::chrono::milliseconds sliceDuration{12};

    // Ignored while an earlier batch is still running: its rows are stale until the list is rebuilt.
    void installThemes(const QList<CopyCommand>& commands) override;
    void refreshThemes() override;
    void openThemeDirectory() override;
    // Takes back the directory's last install batch, whoever made it; a refusal is shown as an alert.
    // The files move on a worker thread, the list showing how far they got once that outlasts a slice;
    // the outcome comes back through the event loop. Ignored while a batch or an undo runs.
    void undoLastInstall() override;

    // The reset object, made with the handler's alerts when first needed and kept from then on.
    ResetLocalThemeDirectories& resetLocalThemeDirectories();

    bool isInstalling() const { return m_batch.has_value(); }
    bool isUndoing() const { return m_undoing; }

    // After each batch that wrote anything, also one stopped by a failure: the files written, in order.
    std::function<void(const QStringList& files)> themesInstalled;
    // After each batch that wrote anything, for the notice that offers to undo it.
    std::function<void(const InstallBatchSummary& summary)> installBatchEnded;
    // After the last batch was undone: what went to the Trash and what came back, in that order.
    std::function<void(const UndoneInstall& undone)> installUndone;

private:
    const Configuration m_configuration;
    const std::shared_ptr<ThemeEntryPresenter> m_presenter;
    const std::shared_ptr<const FileCopier> m_fileCopier;
    const std::shared_ptr<const DeletesFiles> m_fileDeleter;
    const std::shared_ptr<AsksUser> m_user;
    std::unique_ptr<ResetLocalThemeDirectories> m_resetLocalThemeDirectories;

    struct Batch {
        Batch(QList<CopyCommand> commands, const QUrl& installedDirectory)
            : record(installedDirectory), commands(std::move(commands))
        {
        }
        // The batch's copies are made durable together, in the background, when it ends. A sync of the
        // file system between slices would compete with the copies' own write-back and stall a frame.
        DeferredSync durability{DeferredSync::Wait::inBackground};
        // Kept beside the installed themes from the first copy on, so the batch can be undone later.
        InstallRecord record;
        QList<CopyCommand> commands;
        qsizetype next = 0;
        bool showedProgress = false;
        QStringList written;
        InstallBatchSummary summary;
    };
    std::optional<Batch> m_batch;
    bool m_undoing = false;
    bool m_undoShowedProgress = false;

    void continueBatch();
    void undoEnded(Result<UndoneInstall, TextError> undone);
    void reportWritten(QStringList files, const InstallBatchSummary& summary) const;
    void copyingFailed(const CopyCommand& command, const AnyError& error);
};

} // namespace corvane
