// SPDX-License-Identifier: MIT
#include "DesktopScreen.h"

#include "ThemeFiles.h"

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


Updater::Updater(int count)
    : remote(directory.filePath(u"remote/themes"_s))
    , clone(directory.filePath(u"clone"_s))
    , installed(directory.filePath(u"installed"_s))
{
    QDir().mkpath(installed);
    writeTheme(installed, u"harbor-night.theme.json"_s, u"Harbor Night"_s, u"dark"_s, {u"Ann"_s}, u"1.2"_s);
    writeTheme(remote.themesDirectory(), u"harbor-night.theme.json"_s, u"Harbor Night"_s, u"dark"_s, {u"Ann"_s},
               u"1.10"_s);
    for (int index = 0; index < count; ++index)
        writeTheme(remote.themesDirectory(), u"theme-%1.theme.json"_s.arg(index, 3, 10, QChar(u'0')),
                   u"Theme %1"_s.arg(index, 3, 10, QChar(u'0')), index % 2 ? u"dark"_s : u"light"_s,
                   {u"Author %1"_s.arg(index)}, u"1.0.%1"_s.arg(index));
    remote.commitAll(u"Themes"_s);
}

void Updater::open(const QUrl& remoteUrl, std::shared_ptr<ProvidesThemePreviews> previews)
{
    wireframe = CorvaneWireframe::create(
        Configuration(remoteUrl, QUrl::fromLocalFile(clone), QUrl::fromLocalFile(installed)));
    list = wireframe->windowController()->listViewController();
    if (previews)
        wireframe->setPreviewProvider(std::move(previews));
    wireframe->show();
    QWidget* window = wireframe->windowController()->window();
    QVERIFY(QTest::qWaitForWindowExposed(window));
}

void Updater::openReady(const QUrl& remoteUrl)
{
    open(remoteUrl);
    QTRY_VERIFY_WITH_TIMEOUT(settled(), comparisonTimeout);
    QTest::qWait(QApplication::doubleClickInterval());
}

QStringList Updater::rows() const
{
    QStringList names;
    for (const ThemeEntry& entry : list->tableViewModel().entries())
        names << entry.name;
    return names;
}

int Updater::installedCount() const
{
    return int(QDir(installed).entryList({u"*.theme.json"_s}, QDir::Files).size());
}

} // namespace corvane::test
