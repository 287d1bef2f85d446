// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/AsksUser.h"

#include <QPointer>
#include <QWidget>

namespace corvane {

// Asks with the application-modal alerts, each transient for and centred over the window it belongs to
// (set once the window exists), and opens directories with the desktop's file browser.
class WindowAlerts final : public AsksUser {
public:
    void setWindow(QWidget* window) { m_window = window; }

    bool continueAfterCopyingFailed(const QString& fileName, const AnyError& error) override;
    bool showDirectoryAfterDeletingLocalRepoFailed() override;
    bool showDirectoryAfterDeletingInstalledThemesFailed() override;
    bool openFolderAfterUndoFailed(const AnyError& error) override;
    void openDirectory(const QUrl& directory) override;

private:
    QPointer<QWidget> m_window;
};

} // namespace corvane
