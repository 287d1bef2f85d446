// SPDX-License-Identifier: MIT
// Previews in the updater's rows: the host's slow provider runs off the main thread, only for the rows
// on screen, and each row shows its own picture once it is there.
#include "Corvane/ui/ProvidesThemePreviews.h"
#include "Corvane/ui/ThemeCellView.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemePreviewLoader.h"
#include "Corvane/ui/ThemePreviewView.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"

#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <QThread>

#include <condition_variable>
#include <mutex>

using namespace corvane;

namespace {

// Paints each theme in a colour of its own (so a row showing another row's picture is seen), after
// waiting at a gate the test opens.
class GatedProvider final : public ProvidesThemePreviews {
public:
    QImage previewForThemeFile(const QString& path, QSize size) override
    {
        std::unique_lock guard(m_mutex);
        m_asked.append(path);
        m_changed.notify_all();
        m_changed.wait(guard, [this] { return m_open; });
        guard.unlock();
        QThread::msleep(5);
        QImage image(size, QImage::Format_RGB32);
        image.fill(colourOf(path));
        return image;
    }

    static QColor colourOf(const QString& path) { return QColor::fromRgb(QRgb(qHash(path) | 0xff000000u)); }

    void open()
    {
        const std::lock_guard guard(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }
    void waitForAsked(qsizetype count)
    {
        std::unique_lock guard(m_mutex);
        m_changed.wait(guard, [&] { return m_asked.size() >= count; });
    }
    QStringList asked()
    {
        const std::lock_guard guard(m_mutex);
        return m_asked;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = false;
    QStringList m_asked;
};

QString pathOfRow(int row)
{
    return QStringLiteral("/clone/Themes/%1.theme.json").arg(row, 4, 10, QChar(u'0'));
}

QList<ThemeEntry> entries(int count)
{
    QList<ThemeEntry> rows;
    for (int row = 0; row < count; ++row)
        rows.append(ThemeEntry{QStringLiteral("Theme %1").arg(row), QStringLiteral("Dark"), QStringLiteral("Ada"),
                               std::nullopt, QStringLiteral("1.0"), CopyCommand{pathOfRow(row), QString()}});
    return rows;
}

// The themes with a cell on screen, by their place among the themes (the list's rows count the section
// header too).
QList<int> themesOnScreen(ThemeListViewController& list)
{
    QList<int> themes;
    for (const int row : list.themeTableView()->rowsWithCells()) {
        if (const int entry = list.tableViewModel().entryIndex(row); entry >= 0)
            themes << entry;
    }
    return themes;
}

ThemePreviewView* previewOfRow(ThemeListViewController& list, int theme)
{
    const int row = list.tableViewModel().rowOfEntry(theme);
    auto cell = qobject_cast<ThemeCellView*>(list.themeTableView()->cellForRow(row));
    return cell ? cell->previewView() : nullptr;
}

// The colour in the middle of what the row's preview shows now.
QColor shownColour(ThemeListViewController& list, int row)
{
    ThemePreviewView* preview = previewOfRow(list, row);
    if (!preview || !preview->hasPreview())
        return {};
    const QImage image = preview->grab().toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

class ThemePreviewsTest : public QObject {
    Q_OBJECT

private slots:
    void rowsScrolledAwayAreNeverLoadedAndEachRowGetsItsOwnPreview()
    {
        ThemeListViewController list;
        list.resize(580, 460);
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        list.tableViewModel().setEntries(entries(2000));
        auto provider = std::make_shared<GatedProvider>();
        list.setPreviewProvider(provider);
        ThemeTableView& table = *list.themeTableView();
        table.layoutNow();
        const QList<int> firstScreen = themesOnScreen(list);
        QVERIFY(firstScreen.size() > 3);
        // Until a picture comes, every row on screen shows the placeholder.
        for (const int row : firstScreen)
            QVERIFY(previewOfRow(list, row)->isVisible() && !previewOfRow(list, row)->hasPreview());

        // The workers hold the first rows at the gate; the rest of the first screen is still queued
        // when the list moves to its end.
        const qsizetype workers = QThread::idealThreadCount() > 1 ? 2 : 1;
        provider->waitForAsked(workers);
        table.verticalScrollBar()->setValue(table.verticalScrollBar()->maximum());
        table.layoutNow();
        const QList<int> lastScreen = themesOnScreen(list);
        QCOMPARE(lastScreen.constLast(), 1999);
        provider->open();

        for (const int row : lastScreen)
            QTRY_COMPARE(shownColour(list, row), GatedProvider::colourOf(pathOfRow(row)));
        list.previewLoader()->waitForIdle();
        QStringList expected;
        for (const int row : lastScreen)
            expected << pathOfRow(row);
        // The rows held at the gate, then the last screen's rows (two workers take them in either order).
        const QStringList asked = provider->asked();
        QStringList heldAtTheGate = asked.mid(0, workers);
        heldAtTheGate.sort();
        QCOMPARE(heldAtTheGate, (QStringList{pathOfRow(firstScreen.at(0)), pathOfRow(firstScreen.at(1))}.mid(0, workers)));
        QStringList loadedAtTheEnd = asked.mid(workers);
        loadedAtTheEnd.sort();
        QCOMPARE(loadedAtTheEnd, expected);

        // Back at the top: the rows loaded before come from the cache, the others are loaded now.
        table.verticalScrollBar()->setValue(0);
        table.layoutNow();
        for (const int row : firstScreen)
            QTRY_COMPARE(shownColour(list, row), GatedProvider::colourOf(pathOfRow(row)));
        list.previewLoader()->waitForIdle();
        QCOMPARE(provider->asked().size(), asked.size() + firstScreen.size() - workers);
    }
};

QTEST_MAIN(ThemePreviewsTest)
#include "ThemePreviewsTest.moc"
