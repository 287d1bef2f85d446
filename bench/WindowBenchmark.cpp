// SPDX-License-Identifier: MIT
// The updater window off screen with 10,000 rows (ROWS=100000 in the environment for another count):
// from handing the rows to the window to its first complete paint, one scrolled frame at a time from
// top to bottom, each keystroke of a find text over the rows in their two sections, and what the rows
// cost in memory.
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/ProvidesThemePreviews.h"
#include "Corvane/ui/ThemePreviewLoader.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QScrollBar>
#include <QThread>

#include <benchmark/benchmark.h>
#include <malloc.h>

using namespace corvane;

namespace {

int rowCount()
{
    static const int count = qEnvironmentVariableIsSet("ROWS") ? qEnvironmentVariableIntValue("ROWS") : 10000;
    return count;
}

QList<ThemeEntry> manyRows()
{
    const int rowCount = ::rowCount();
    QList<ThemeEntry> rows;
    rows.reserve(rowCount);
    for (int row = 0; row < rowCount; ++row) {
        const QString file = QStringLiteral("theme-%1.theme.json").arg(row, 5, 10, QLatin1Char('0'));
        rows.append(ThemeEntry{QStringLiteral("Theme Number %1").arg(row), row % 3 ? QStringLiteral("Dark") : QStringLiteral("Light"),
                               QStringLiteral("Ann Author, Bo Builder"),
                               row % 2 ? std::optional(QStringLiteral("1.%1.0").arg(row)) : std::nullopt,
                               QStringLiteral("2.%1.0").arg(row),
                               CopyCommand{QStringLiteral("/clone/Themes/") + file, QStringLiteral("/installed/") + file},
                               row % 3 ? QStringLiteral("dark") : QStringLiteral("light")});
    }
    return rows;
}

ThemeListState success(QList<ThemeEntry> rows)
{
    return Result<QList<ThemeEntry>, AnyError>(std::move(rows));
}

// Lets every fade end and every pending layout and paint happen.
void settle(ThemeListViewController& list)
{
    while (list.isAnimating())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QCoreApplication::processEvents();
}

std::shared_ptr<CorvaneWindowController> shownWindow()
{
    auto controller = CorvaneWindowController::fromForm();
    controller->window()->resize(580, 460);
    controller->window()->show();
    controller->showThemeEntries(std::nullopt); // as every refresh starts
    settle(*controller->listViewController());
    return controller;
}

void FirstPaint(benchmark::State& state)
{
    const QList<ThemeEntry> rows = manyRows();
    for (auto _ : state) {
        state.PauseTiming();
        const auto controller = shownWindow();
        state.ResumeTiming();
        controller->showThemeEntries(success(rows));
        QCoreApplication::processEvents(); // the list lays out its rows
        controller->window()->repaint();   // and everything is drawn, the fading overlay included
        state.PauseTiming();
        benchmark::DoNotOptimize(controller->listViewController()->themeTableView()->cellsMade());
        state.counters["rows"] = rowCount();
        controller->window()->hide();
        state.ResumeTiming();
    }
}
BENCHMARK(FirstPaint)->Unit(benchmark::kMillisecond)->Iterations(20);

// One frame: the list moves by a step and the window is painted again. The argument is the step in
// pixels: a few pixels of a smooth trackpad scroll, a wheel notch, a page.
void ScrollFrame(benchmark::State& state)
{
    const auto controller = shownWindow();
    ThemeListViewController& list = *controller->listViewController();
    controller->showThemeEntries(success(manyRows()));
    settle(list);
    QScrollBar* bar = list.themeTableView()->verticalScrollBar();
    const int step = int(state.range(0));
    qint64 frames = 0;
    for (auto _ : state) {
        if (bar->value() >= bar->maximum()) {
            state.PauseTiming();
            bar->setValue(0);
            QCoreApplication::processEvents();
            state.ResumeTiming();
        }
        bar->setValue(bar->value() + step);
        QCoreApplication::processEvents(); // new rows get their cells; the window is painted
        ++frames;
    }
    state.counters["cells"] = list.themeTableView()->cellsMade();
    state.counters["frames"] = double(frames);
}
BENCHMARK(ScrollFrame)->Arg(8)->Arg(60)->Arg(400)->Unit(benchmark::kMicrosecond);

// One keystroke in the find field: the rows are narrowed, regrouped under their two headers with new
// counts, laid out and painted. Every tenth theme has a skipped version, so the skips are consulted
// too. The keystrokes type "Theme Number 4321" letter by letter, then clear it, over and over.
void FindKeystroke(benchmark::State& state)
{
    const auto controller = shownWindow();
    ThemeListViewController& list = *controller->listViewController();
    const QList<ThemeEntry> rows = manyRows();
    controller->showThemeEntries(success(rows));
    SkippedVersions skipped;
    for (int row = 0; row < rows.size(); row += 10)
        skipped.skip(rows.at(row));
    list.tableViewModel().setSkippedVersions(skipped);
    settle(list);
    const QString typed = QStringLiteral("Theme Number 4321");
    QLineEdit* find = list.findField();
    qsizetype length = 0;
    for (auto _ : state) {
        length = length == typed.size() ? 0 : length + 1;
        find->setText(typed.left(length));
        QCoreApplication::processEvents(); // the rows shown get their cells
        controller->window()->repaint();   // and the window is drawn
    }
    state.counters["rows"] = rowCount();
    state.counters["sections"] = list.tableViewModel().rowCount() - list.tableViewModel().entries().size();
}
BENCHMARK(FindKeystroke)->Unit(benchmark::kMicrosecond);

// A host's provider that takes 5 ms to draw each preview.
class SlowPreviews final : public ProvidesThemePreviews {
public:
    QImage previewForThemeFile(const QString& path, QSize size) override
    {
        QThread::msleep(5);
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor::fromHsv(int(qHash(path) % 360), 180, 200));
        return image;
    }
};

// Scrolling from top to bottom at 60 frames a second, the first argument the step in pixels; with the
// second argument 1, a slow provider loads the rows' previews meanwhile. Each frame is the scroll step,
// the previews that arrived and the paint. Reports the longest frame.
void PacedScrollFrame(benchmark::State& state)
{
    const auto controller = shownWindow();
    ThemeListViewController& list = *controller->listViewController();
    const bool previews = state.range(1) == 1;
    if (previews)
        list.setPreviewProvider(std::make_shared<SlowPreviews>());
    controller->showThemeEntries(success(manyRows()));
    settle(list);
    QScrollBar* bar = list.themeTableView()->verticalScrollBar();
    const int step = int(state.range(0));
    qint64 frames = 0;
    qint64 longest = 0;
    QElapsedTimer frame;
    frame.start();
    QElapsedTimer betweenFrames;
    for (auto _ : state) {
        state.PauseTiming();
        if (bar->value() >= bar->maximum()) {
            bar->setValue(0);
            QCoreApplication::processEvents();
        }
        // The rest of the 16.7 ms a frame has, in which previews keep arriving.
        betweenFrames.start();
        while (betweenFrames.nsecsElapsed() < 16'700'000 - frame.nsecsElapsed())
            QThread::usleep(500);
        state.ResumeTiming();
        frame.start();
        bar->setValue(bar->value() + step);
        QCoreApplication::processEvents(); // new rows, the previews that came meanwhile, the paint
        longest = std::max(longest, frame.nsecsElapsed());
        ++frames;
    }
    if (previews)
        list.previewLoader()->waitForIdle();
    state.counters["longestFrameMs"] = double(longest) / 1e6;
    state.counters["frames"] = double(frames);
}
BENCHMARK(PacedScrollFrame)->ArgsProduct({{60, 400}, {0, 1}})->Unit(benchmark::kMicrosecond)->Iterations(1200);

double residentMegabytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields.at(1).toDouble() * 4096.0 / (1024.0 * 1024.0) : 0;
}

double heapMegabytes()
{
    return double(mallinfo2().uordblks) / (1024.0 * 1024.0);
}

// What a window with all its rows holds beyond the same window with none.
void MemoryOfRows(benchmark::State& state)
{
    for (auto _ : state) {
        const auto controller = shownWindow();
        ThemeListViewController& list = *controller->listViewController();
        controller->showThemeEntries(success({}));
        settle(list);
        controller->window()->repaint();
        const double heapBefore = heapMegabytes();
        const double residentBefore = residentMegabytes();
        controller->showThemeEntries(success(manyRows()));
        settle(list);
        controller->window()->repaint();
        list.themeTableView()->verticalScrollBar()->setValue(list.themeTableView()->verticalScrollBar()->maximum());
        settle(list);
        state.counters["heapMB"] = heapMegabytes() - heapBefore;
        state.counters["residentMB"] = residentMegabytes() - residentBefore;
        state.counters["cells"] = list.themeTableView()->cellsMade();
    }
}
BENCHMARK(MemoryOfRows)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
