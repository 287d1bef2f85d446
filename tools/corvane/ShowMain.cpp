// SPDX-License-Identifier: MIT
// corvane-show: `corvane show` in a program of its own, the only one of the tool that loads the window.
#include "Commands.h"

#include <QApplication>

namespace {

// Without a display there is nothing to open a window on; render off screen instead (show then needs
// --screenshot).
void chooseOffscreenPlatformWithoutDisplay()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

} // namespace

int main(int argc, char** argv)
{
    chooseOffscreenPlatformWithoutDisplay();
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("corvane"));
    QStringList arguments = QCoreApplication::arguments();
    arguments[0] = QStringLiteral("show"); // as corvane's parser sees a subcommand: its name first
    return corvane::cli::runShow(arguments);
}
