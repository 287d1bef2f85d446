// SPDX-License-Identifier: MIT
#pragma once
// What the desktop tests share: reading the X server's screen back, input through xdotool, and an
// updater over a remote of numbered themes.
#include "UpdaterScene.h"

#include <QApplication>
#include <QColor>
#include <QImage>
#include <QRect>
#include <QStringList>
#include <QTest>

namespace corvane::test {

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
// Keeps the window as the screen shows it, with the window manager's frame around it.
void keepWindowFrame(const QWidget* window, const QString& name);

} // namespace corvane::test
