// SPDX-License-Identifier: MIT
#include "DesktopScreen.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace corvane::test {

void startDesktopTest(const QTemporaryDir& settings)
{
    if (QGuiApplication::platformName() != "xcb"_L1)
        QSKIP("needs a real X server: run through tests/desktop/on-desktop.sh");
    QVERIFY2(!QStandardPaths::findExecutable(u"xdotool"_s).isEmpty(), "xdotool is missing");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
}


// What the X server shows in a rectangle of the screen now.
QImage screenAt(const QRect& global)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, global.x(), global.y(), global.width(), global.height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

QRect globalRect(const QWidget* widget)
{
    return QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
}

int darkestGrey(const QImage& image)
{
    int darkest = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            darkest = std::min(darkest, qGray(image.pixel(x, y)));
    }
    return darkest;
}

// The share of pixels close to a colour.
double shareNear(const QImage& image, const QColor& colour)
{
    int near = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = QColor::fromRgb(image.pixel(x, y));
            near += std::abs(pixel.red() - colour.red()) + std::abs(pixel.green() - colour.green())
                        + std::abs(pixel.blue() - colour.blue())
                    < 90;
        }
    }
    return image.isNull() ? 0.0 : double(near) / (image.width() * image.height());
}

int pixelsDarkerThan(const QImage& image, int grey)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qGray(image.pixel(x, y)) < grey;
    }
    return count;
}

// Runs xdotool with the arguments and waits for it, the event loop turning meanwhile.
bool xdotool(const QStringList& arguments)
{
    QProcess process;
    process.start(u"xdotool"_s, arguments);
    if (!process.waitForStarted(5000))
        return false;
    QElapsedTimer waited;
    waited.start();
    while (process.state() != QProcess::NotRunning && waited.elapsed() < 10000)
        QTest::qWait(10);
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

QStringList clickAt(const QPoint& global)
{
    return {u"mousemove"_s, QString::number(global.x()), QString::number(global.y()), u"click"_s, u"1"_s};
}

// Keeps the frames a test looked at when CORVANE_DESKTOP_FRAMES names a folder, for a person to see.
void keepFrame(const QImage& frame, const QString& name)
{
    const QString folder = qEnvironmentVariable("CORVANE_DESKTOP_FRAMES");
    if (!folder.isEmpty() && QDir().mkpath(folder))
        frame.save(folder + u'/' + name + u".png"_s);
}

void keepWindowFrame(const QWidget* window, const QString& name)
{
    keepFrame(screenAt(globalRect(window).adjusted(-4, -30, 4, 4)), name);
}

} // namespace corvane::test
