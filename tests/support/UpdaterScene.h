// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/CorvaneWireframe.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/ProvidesThemePreviews.h"
#include "Corvane/ui/ThemeCellView.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"

#include "GitRepositoryFixture.h"

#include <QPushButton>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>

namespace corvane::test {

inline constexpr int comparisonTimeout = 30000;

// A remote with `count` new themes "Theme 000", "Theme 001"... (light and dark in turn, version 1.0.<n>),
// and Harbor Night 1.10 over an installed 1.2; the updater's window over them once created.
struct Updater {
    QTemporaryDir directory;
    GitRepositoryFixture remote;
    QString clone, installed;
    std::unique_ptr<CorvaneWireframe> wireframe;
    ThemeListViewController* list = nullptr;

    explicit Updater(int count);
    // The updater over the remote at remoteUrl, with the host's previews when given; not shown yet.
    void create(const QUrl& remoteUrl, std::shared_ptr<ProvidesThemePreviews> previews = nullptr);
    // Created and shown.
    void open(const QUrl& remoteUrl, std::shared_ptr<ProvidesThemePreviews> previews = nullptr);
    // Opened, its list settled and still for a double-click interval, so a press counts.
    void openReady(const QUrl& remoteUrl);
    bool settled() const { return list->refreshButton()->isEnabled() && !list->isAnimating(); }
    int installedCount() const;
    // The names of the themes shown, in their order.
    QStringList rows() const;
    // The cell of the theme at `entry` in the rows shown (headers not counted).
    ThemeCellView* cell(int entry) const
    {
        const int row = list->tableViewModel().rowOfEntry(entry);
        return qobject_cast<ThemeCellView*>(list->themeTableView()->cellForRow(row));
    }
};

} // namespace corvane::test
