// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Configuration.h"
#include "Corvane/presentation/ResetLocalThemeDirectories.h"
#include "Corvane/presentation/ThemeEntryPresenter.h"
#include "Corvane/presentation/ThemeListViewControllerDelegate.h"
#include "Corvane/themes/DeletesFiles.h"
#include "Corvane/themes/FileCopier.h"

#include <memory>

namespace corvane {

// Carries out what the user asks for in the updater window: installing, refreshing, opening the
// installed-themes directory, and, after a failed copy, starting over with empty local directories.
// Main thread only; copies and alerts are synchronous.
class ThemeEntryEventHandler final : public ThemeListViewControllerDelegate {
public:
    // fileDeleter is what the reset object, made on first use, moves directories to the Trash with.
    ThemeEntryEventHandler(Configuration configuration, std::shared_ptr<ThemeEntryPresenter> presenter,
                           std::shared_ptr<const FileCopier> fileCopier,
                           std::shared_ptr<const DeletesFiles> fileDeleter = nullptr);

    void installThemes(const QList<CopyCommand>& commands) override;
    void refreshThemes() override;
    void openThemeDirectory() override;

    // The reset object, made with the default alerts when first needed and kept from then on.
    ResetLocalThemeDirectories& resetLocalThemeDirectories();

private:
    const Configuration m_configuration;
    const std::shared_ptr<ThemeEntryPresenter> m_presenter;
    const std::shared_ptr<const FileCopier> m_fileCopier;
    const std::shared_ptr<const DeletesFiles> m_fileDeleter;
    std::unique_ptr<ResetLocalThemeDirectories> m_resetLocalThemeDirectories;
};

} // namespace corvane
