// SPDX-License-Identifier: MIT
// The updater on a real X server (run it through tests/desktop/on-desktop.sh, see bench/desktop-figures.sh):
// how soon the loading overlay reaches the screen after show(), and how Update All of 2,000 themes and
// the Undo that takes it back keep the window painting while files move. Prints one line per figure;
// each run measures afresh.
#include "Corvane/module/CorvaneWireframe.h"
#include "Corvane/themes/DeferredSync.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/UndoNotice.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <functional>

#include <unistd.h>

using namespace corvane;

namespace {

constexpr int updateCount = 2000;

void git(const QString& directory, const QStringList& arguments)
{
    QProcess process;
    process.setWorkingDirectory(directory);
    process.start(QStringLiteral("git"), arguments);
    process.waitForFinished(-1);
}

void writeTheme(const QString& path, int index, const char* version)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(QStringLiteral(R"({"name": "Theme %1", "style": "%2", "author": [{"name": "Author %1"}], "version": "%3"})")
                       .arg(index)
                       .arg(index % 2 ? QStringLiteral("dark") : QStringLiteral("light"))
                       .arg(QLatin1StringView(version))
                       .toUtf8());
}

// A remote with `count` themes at 2.0.0, each installed at 1.0.0 unless they are to be new.
struct Scene {
    QTemporaryDir directory;
    QString remote = directory.filePath(QStringLiteral("remote")), clone = directory.filePath(QStringLiteral("clone")),
            installed = directory.filePath(QStringLiteral("installed"));

    explicit Scene(int count, bool installedBefore = true)
    {
        QDir().mkpath(remote + QStringLiteral("/Themes"));
        QDir().mkpath(installed);
        QDir().mkpath(directory.filePath(QStringLiteral("data")));
        qputenv("XDG_DATA_HOME", QFile::encodeName(directory.filePath(QStringLiteral("data"))));
        for (int index = 0; index < count; ++index) {
            const QString name = QStringLiteral("/t%1.theme.json").arg(index, 5, 10, QLatin1Char('0'));
            writeTheme(remote + QStringLiteral("/Themes") + name, index, "2.0.0");
            if (installedBefore)
                writeTheme(installed + name, index, "1.0.0");
        }
        git(remote, {QStringLiteral("init"), QStringLiteral("-q"), QStringLiteral("-b"), QStringLiteral("master")});
        git(remote, {QStringLiteral("add"), QStringLiteral("-A")});
        git(remote, {QStringLiteral("-c"), QStringLiteral("user.name=b"), QStringLiteral("-c"),
                     QStringLiteral("user.email=b@b"), QStringLiteral("commit"), QStringLiteral("-qm"), QStringLiteral("t")});
    }
    std::unique_ptr<CorvaneWireframe> updater() const
    {
        return CorvaneWireframe::create(Configuration(QUrl::fromLocalFile(remote), QUrl::fromLocalFile(clone),
                                                      QUrl::fromLocalFile(installed)));
    }
};

void spin(const std::function<bool()>& done, int timeoutMs = 120000)
{
    QElapsedTimer waited;
    waited.start();
    while (!done() && waited.elapsed() < timeoutMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

// Milliseconds from show() to the first screen frame in which the loading overlay's text shows.
double firstOverlayFrame(const Scene& scene)
{
    auto updater = scene.updater();
    ThemeListViewController* list = updater->windowController()->listViewController();
    auto message = list->loadingViewController()->findChild<QLabel*>(QStringLiteral("messageLabel"));
    QWidget* window = updater->windowController()->window();
    window->show();
    spin([&] { return window->windowHandle() && window->windowHandle()->isExposed(); });
    QCoreApplication::processEvents();
    QElapsedTimer sinceShow;
    sinceShow.start();
    updater->show(); // the presenter's first refresh: the overlay starts fading in
    const QRect area(message->mapToGlobal(QPoint(0, 0)), message->size());
    double seen = -1;
    while (sinceShow.elapsed() < 2000) {
        QCoreApplication::processEvents();
        const QImage frame = QGuiApplication::primaryScreen()
                                 ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
                                 .toImage();
        int darkest = 255;
        for (int y = 0; y < frame.height(); ++y)
            for (int x = 0; x < frame.width(); ++x)
                darkest = std::min(darkest, qGray(frame.pixel(x, y)));
        if (darkest < 250) {
            seen = sinceShow.nsecsElapsed() / 1e6;
            break;
        }
    }
    spin([&] { return list->refreshButton()->isEnabled(); });
    return seen;
}

struct BatchFigures {
    double batchMs = 0, longestLoopGapMs = 0, longestPaintGapMs = 0;
    int paints = 0;
};

class PaintClock : public QObject {
public:
    QList<qint64> paints;
    QElapsedTimer* clock = nullptr;
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            paints << clock->nsecsElapsed();
        return false;
    }
};

// With --settle each batch waits out the file system's memory of recent deletions first: ext4 without a
// journal (this machine's disk) scans the inodes deleted in the last 30 s (the dirty-expire interval) on
// every file it creates, so a batch right after the previous scene's clean-up measures that, not us.
bool settle = false;

// Starts the list's work when the event loop next turns and times it until the list reloads: how long
// it took, and the longest waits between event-loop turns and between paints of the overlay.
BatchFigures untilReload(CorvaneWireframe& updater, ThemeListViewController* list, const std::function<void()>& start)
{
    QElapsedTimer clock;
    bool ended = false;
    qint64 endedAt = 0;
    const QMetaObject::Connection reloaded = QObject::connect(
        updater.windowController().get(), &CorvaneWindowController::themeEntriesShown, [&](bool loading) {
            if (loading && !ended) {
                ended = true;
                endedAt = clock.nsecsElapsed();
            }
        });
    PaintClock paints;
    paints.clock = &clock;
    list->loadingViewController()->installEventFilter(&paints);
    qint64 lastTick = 0, longestGap = 0;
    QTimer ticks;
    ticks.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticks, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        if (!ended)
            longestGap = std::max(longestGap, now - lastTick);
        lastTick = now;
    });
    ticks.start(2);
    QTimer::singleShot(0, list, [&] {
        clock.start();
        lastTick = 0;
        start();
    });
    spin([&] { return ended; });
    ticks.stop();
    QObject::disconnect(reloaded);
    list->loadingViewController()->removeEventFilter(&paints);

    BatchFigures figures;
    figures.batchMs = endedAt / 1e6;
    figures.longestLoopGapMs = longestGap / 1e6;
    qint64 previous = 0;
    for (const qint64 paint : std::as_const(paints.paints)) {
        if (paint > endedAt)
            break;
        figures.longestPaintGapMs = std::max(figures.longestPaintGapMs, (paint - previous) / 1e6);
        previous = paint;
        ++figures.paints;
    }
    spin([&] { return list->refreshButton()->isEnabled() && !list->isAnimating(); });
    return figures;
}

void print(const char* what, const BatchFigures& figures)
{
    std::printf("%s of %d: %.0f ms, longest event-loop gap %.1f ms, longest gap between overlay paints %.1f ms "
                "over %d paints\n",
                what, updateCount, figures.batchMs, figures.longestLoopGapMs, figures.longestPaintGapMs, figures.paints);
}

// Update All of the scene's themes, then the Undo its notice offers.
void updateAllAndUndo(const Scene& scene, const char* updateName, const char* undoName)
{
    // The batch starts from a settled disk, as a user's does: the scene's own thousands of new files
    // and the previous run's background sync are written out first.
    DeferredSync::waitForBackgroundSyncs();
    ::sync();
    if (settle)
        ::sleep(31);
    auto updater = scene.updater();
    ThemeListViewController* list = updater->windowController()->listViewController();
    updater->show();
    spin([&] { return list->refreshButton()->isEnabled() && !list->isAnimating(); });
    if (list->tableViewModel().entries().size() != updateCount)
        std::fprintf(stderr, "expected %d rows, got %lld\n", updateCount, qlonglong(list->tableViewModel().entries().size()));
    print(updateName, untilReload(*updater, list, [list] { list->updateAll(); }));
    DeferredSync::waitForBackgroundSyncs();
    spin([&] { return list->undoNotice()->undoButton()->isEnabled(); });
    print(undoName, untilReload(*updater, list, [list] { list->undoNotice()->undoButton()->click(); }));
    if (list->tableViewModel().entries().size() != updateCount)
        std::fprintf(stderr, "after the undo, expected %d rows, got %lld\n", updateCount,
                     qlonglong(list->tableViewModel().entries().size()));
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (QGuiApplication::platformName() != QLatin1StringView("xcb")) {
        std::fprintf(stderr, "run on a real X server: tests/desktop/on-desktop.sh %s\n", argv[0]);
        return 2;
    }
    settle = application.arguments().contains(QStringLiteral("--settle"));
    QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());

    {
        const Scene scene(200);
        for (int run = 0; run < 5; ++run)
            std::printf("first frame with the loading overlay after show(): %.1f ms\n", firstOverlayFrame(scene));
    }
    for (int run = 0; run < 3; ++run)
        updateAllAndUndo(Scene(updateCount), "update all", "undo of the updates");
    for (int run = 0; run < 2; ++run)
        updateAllAndUndo(Scene(updateCount, false), "install all", "undo of the new themes");
    return 0;
}
