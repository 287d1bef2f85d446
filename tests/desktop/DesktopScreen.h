// SPDX-License-Identifier: MIT
#pragma once
// What the desktop tests share: reading the X server's screen back, input through xdotool, and an
// updater over a remote of numbered themes.
#include "Corvane/module/CorvaneWireframe.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/ProvidesThemePreviews.h"
#include "Corvane/ui/ThemeCellView.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"

#include "GitRepositoryFixture.h"

#include <QApplication>
#include <QColor>
#include <QDir>
#include <QImage>
#include <QPushButton>
#include <QRect>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <memory>

namespace corvane::test {

inline constexpr int comparisonTimeout = 30000;

// What every desktop test's initTestCase does: skips the whole test outside a real X server (it runs
// through on-desktop.sh), fails without xdotool, and keeps the windows' settings in `settings`.
void startDesktopTest(const QTemporaryDir& settings);

// What the X server shows in a rectangle of the screen now.
QImage screenAt(const QRect& global);
QRect globalRect(const QWidget* widget);
int darkestGrey(const QImage& image);
// The share of pixels close to a colour.
double shareNear(const QImage& image, const QColor& colour);
int pixelsDarkerThan(const QImage& image, int grey);
// Runs xdotool with the arguments and waits for it, the event loop turning meanwhile.
bool xdotool(const QStringList& arguments);
QStringList clickAt(const QPoint& global);
// Keeps the frames a test looked at when CORVANE_DESKTOP_FRAMES names a folder, for a person to see.
void keepFrame(const QImage& frame, const QString& name);

// A remote with `count` new themes (and Harbor Night 1.10 over an installed 1.2), the updater over it.
struct Updater {
    QTemporaryDir directory;
    GitRepositoryFixture remote;
    QString clone, installed;
    std::unique_ptr<CorvaneWireframe> wireframe;
    ThemeListViewController* list = nullptr;

    explicit Updater(int count);
    // Shown over the remote, with the host's previews when given.
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
