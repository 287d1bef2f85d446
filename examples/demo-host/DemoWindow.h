// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/CorvaneModule.h"

#include <QSettings>
#include <QWidget>

#include <memory>

class QLabel;
class QPushButton;
class QTreeWidget;
class QFrame;

// The preferences page of a small editor that keeps its themes current with Corvane: a quiet notice when
// the theme repository has moved on, the installed themes, and a button that opens the updater.
class DemoWindow : public QWidget {
    Q_OBJECT

public:
    DemoWindow(corvane::Configuration configuration, QSettings& settings);

    // Asks, in the background, whether the repository moved on since the commit this host remembered.
    void checkForThemeUpdates();
    void showThemeUpdates();
    void reloadInstalledThemes();
    // Takes back the last install batch, from the window or `corvane install`, and says what happened.
    void undoLastThemeUpdate();

signals:
    void repositoryCheckFinished();

private:
    void repositoryStatusArrived(const corvane::ThemeRepositoryStatus& status);
    void offerToForgetSkippedVersions();

    corvane::CorvaneModule m_module;
    QSettings& m_settings;
    std::unique_ptr<corvane::UpdatesThemes> m_updater;
    QString m_newestCommit;

    QFrame* m_notice = nullptr;
    QLabel* m_noticeText = nullptr;
    QTreeWidget* m_themeList = nullptr;
    QLabel* m_status = nullptr;
    QPushButton* m_forgetSkipped = nullptr;
};
