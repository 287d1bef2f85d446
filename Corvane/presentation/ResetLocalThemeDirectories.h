// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Configuration.h"
#include "Corvane/themes/DeletesFiles.h"

#include <QUrl>

#include <functional>
#include <memory>

namespace corvane {

// Starts the user over after a failed copy: moves the local clone and then the installed-themes
// directory to the Trash, each as a whole. A failure of either is reported through its own callback,
// which by default shows the matching alert and offers to open the directory.
class ResetLocalThemeDirectories {
public:
    using FailureHandler = std::function<void(const QUrl& directory)>;

    ResetLocalThemeDirectories(Configuration configuration, std::shared_ptr<const DeletesFiles> fileDeleter);

    void reset();

    // Replaceable, for a host or test that reacts differently.
    FailureHandler handleDeletingLocalThemeRepoError;
    FailureHandler handleDeletingInstalledThemesError;

    // The alert for the clone or the installed-themes directory, then the file browser on "Show Directory".
    static void showDeletingLocalThemeRepoError(const QUrl& directory);
    static void showDeletingInstalledThemesError(const QUrl& directory);

private:
    const Configuration m_configuration;
    const std::shared_ptr<const DeletesFiles> m_fileDeleter;
};

} // namespace corvane
