// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Configuration.h"
#include "Corvane/presentation/AsksUser.h"
#include "Corvane/themes/DeletesFiles.h"

#include <QUrl>

#include <functional>
#include <memory>

namespace corvane {

// Starts the user over after a failed copy: moves the local clone and then the installed-themes
// directory to the Trash, each as a whole. A failure of either is reported through its own callback,
// which by default asks the user with the matching alert and opens the directory on "Show Directory".
class ResetLocalThemeDirectories {
public:
    using FailureHandler = std::function<void(const QUrl& directory)>;

    ResetLocalThemeDirectories(Configuration configuration, std::shared_ptr<const DeletesFiles> fileDeleter,
                               std::shared_ptr<AsksUser> user);

    void reset();

    // Replaceable, for a host or test that reacts differently.
    FailureHandler handleDeletingLocalThemeRepoError;
    FailureHandler handleDeletingInstalledThemesError;

private:
    const Configuration m_configuration;
    const std::shared_ptr<const DeletesFiles> m_fileDeleter;
    const std::shared_ptr<AsksUser> m_user;
};

} // namespace corvane
