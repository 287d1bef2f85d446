// The list, its cells and overlays as real widgets off screen.
#include "Corvane/module/TextError.h"
#include "Corvane/ui/AllUpdatedViewController.h"
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/ThemeCellView.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"
#include "Corvane/ui/VersionLabel.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

using namespace corvane;

namespace {

CopyCommand commandFor(int row)
{
    const QString file = QStringLiteral("theme-%1.theme.json").arg(row);
    return CopyCommand{QUrl::fromLocalFile(QStringLiteral("/clone/Themes/") + file),
                       QUrl::fromLocalFile(QStringLiteral("/installed/") + file)};
}

// Even rows are updates, odd rows new themes.
QList<ThemeEntry> entries(int count)
{
    QList<ThemeEntry> list;
    for (int row = 0; row < count; ++row) {
        list.append(ThemeEntry{QStringLiteral("Theme %1").arg(row), QStringLiteral("Dark"), QStringLiteral("Ann, Bo"),
                               row % 2 == 0 ? std::optional(QStringLiteral("1.%1.0").arg(row)) : std::nullopt,
                               QStringLiteral("2.%1.0").arg(row), commandFor(row)});
    }
    return list;
}

class RecordingDelegate final : public ThemeListViewControllerDelegate {
public:
    void installThemes(const QList<CopyCommand>& commands) override { installs << commands; }
    void refreshThemes() override { ++refreshes; }
    void openThemeDirectory() override { ++opens; }
    QList<QList<CopyCommand>> installs;
    int refreshes = 0;
    int opens = 0;
};

ThemeListState rows(int count)
{
    return Result<QList<ThemeEntry>, AnyError>(entries(count));
}

ThemeListState failure()
{
    return Result<QList<ThemeEntry>, AnyError>(std::unexpected(AnyError(TextError{QStringLiteral("offline")})));
}

// The display states by name, for table-driven rows (a state itself has no equality for QTest).
enum class Kind { loading, empty, rows, failure };

ThemeListState stateOf(Kind kind)
{
    switch (kind) {
    case Kind::loading:
        return std::nullopt;
    case Kind::empty:
        return rows(0);
    case Kind::rows:
        return rows(3);
    case Kind::failure:
        break;
    }
    return failure();
}

// A window holding just the list, shown off screen at a desktop size.
struct ListWindow {
    QWidget window;
    ThemeListViewController* list = new ThemeListViewController;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();

    ListWindow()
    {
        auto layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(list);
        list->setDelegate(delegate);
        window.resize(560, 440);
        window.show();
    }
    // What the window controller does with a state, without its alert.
    void show(const ThemeListState& state)
    {
        list->updateButtons(state);
        list->updateStatusViews(state);
        list->tableViewModel().setEntries(state && *state ? **state : QList<ThemeEntry>{});
    }
    ThemeTableView& table() const { return *list->themeTableView(); }
    // The list lays its rows out when the event loop next runs, as a shown window does.
    ThemeCellView* cell(int row) const
    {
        QCoreApplication::processEvents();
        return qobject_cast<ThemeCellView*>(table().cellForRow(row));
    }
};

} // namespace

class ThemeListViewControllerTest : public QObject {
    Q_OBJECT

private slots:
    void buttonsFollowTheState_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<bool>("updateAll");
        QTest::addColumn<bool>("refresh");
        QTest::newRow("loading") << Kind::loading << false << false;
        QTest::newRow("nothing to update") << Kind::empty << false << true;
        QTest::newRow("rows") << Kind::rows << true << true;
        QTest::newRow("failure") << Kind::failure << false << true;
    }

    void buttonsFollowTheState()
    {
        QFETCH(Kind, kind);
        const ThemeListState state = stateOf(kind);
        QFETCH(bool, updateAll);
        QFETCH(bool, refresh);
        ListWindow window;
        window.show(rows(2)); // a state before, so every button really changes or stays
        window.show(state);
        QCOMPARE(window.list->updateAllButton()->isEnabled(), updateAll);
        QCOMPARE(window.list->refreshButton()->isEnabled(), refresh);
        QVERIFY(window.list->openThemeDirectoryButton()->isEnabled());
    }

    void overlaysFollowTheState_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<bool>("loadingShown");
        QTest::addColumn<bool>("allUpToDateShown");
        QTest::newRow("loading") << Kind::loading << true << false;
        QTest::newRow("nothing to update") << Kind::empty << false << true;
        QTest::newRow("rows") << Kind::rows << false << false;
        QTest::newRow("failure") << Kind::failure << false << false;
    }

    void overlaysFollowTheState()
    {
        QFETCH(Kind, kind);
        const ThemeListState state = stateOf(kind);
        QFETCH(bool, loadingShown);
        QFETCH(bool, allUpToDateShown);
        ListWindow window;
        LoadingViewController* loading = window.list->loadingViewController();
        AllUpdatedViewController* allUpToDate = window.list->allUpToDateViewController();
        QVERIFY(loading->isHidden() && allUpToDate->isHidden()); // both start hidden and transparent
        QCOMPARE(loading->opacity(), 0.0);

        window.show(std::nullopt);
        QTRY_VERIFY(!window.list->isAnimating());
        window.show(state);
        if (!state && loadingShown) {
            QVERIFY(loading->isIndicatorRunning());
        }
        if (state && *state && (*state)->isEmpty()) {
            // The loading overlay waits under the all-up-to-date one until that has faded in.
            QVERIFY(!loading->isHidden());
            QCOMPARE(loading->opacity(), 1.0);
        }
        QTRY_VERIFY(!window.list->isAnimating());
        QCOMPARE(!loading->isHidden() && loading->opacity() == 1.0, loadingShown);
        QCOMPARE(loading->isIndicatorRunning(), loadingShown);
        QCOMPARE(!allUpToDate->isHidden() && allUpToDate->opacity() == 1.0, allUpToDateShown);
    }

    void overlaysCoverTheListAndLetThePointerThroughWhenGone()
    {
        ListWindow window;
        window.show(std::nullopt);
        window.show(rows(3));
        window.show(std::nullopt);
        QTRY_VERIFY(!window.list->isAnimating());
        LoadingViewController* loading = window.list->loadingViewController();
        for (const QSize size : {QSize(700, 600), QSize(480, 320)}) {
            window.window.resize(size);
            QCoreApplication::processEvents();
            QCOMPARE(loading->geometry(), window.table().geometry());
            QCOMPARE(window.list->allUpToDateViewController()->geometry(), window.table().geometry());
        }
        // While the overlay is up, the pointer meets it, not the rows beneath.
        const QPoint middle = window.table().geometry().center();
        QWidget* hit = window.list->childAt(middle);
        QVERIFY(hit == loading || loading->isAncestorOf(hit));

        window.show(rows(3));
        QTRY_VERIFY(loading->isHidden());
        ThemeCellView* cell = window.cell(0);
        QVERIFY(cell);
        const QPoint button = cell->updateButton()->mapTo(window.list, cell->updateButton()->rect().center());
        QCOMPARE(window.list->childAt(button), cell->updateButton());
    }

    void allUpToDateLiesAboveLoading()
    {
        ListWindow window;
        window.show(std::nullopt);
        window.show(rows(0));
        QTRY_VERIFY(!window.list->isAnimating());
        window.list->loadingViewController()->show(); // both up at once
        QTRY_VERIFY(!window.list->isAnimating());
        QWidget* hit = window.list->childAt(window.table().geometry().center());
        QVERIFY(window.list->allUpToDateViewController()->isAncestorOf(hit));
    }

    void showThenHideEndsTransparentWithTheIndicatorStopped()
    {
        ListWindow window;
        LoadingViewController* loading = window.list->loadingViewController();
        loading->show();
        loading->hide();
        QVERIFY(loading->isIndicatorRunning()); // until the fade has ended
        QTRY_VERIFY(!loading->isIndicatorRunning());
        QCOMPARE(loading->opacity(), 0.0);

        // Hiding one never shown stops nothing that runs and leaves it hidden.
        window.list->allUpToDateViewController()->hide();
        QVERIFY(window.list->allUpToDateViewController()->isHidden());
    }

    void actionsReachTheDelegate()
    {
        ListWindow window;
        window.show(rows(3));
        QTest::mouseClick(window.list->updateAllButton(), Qt::LeftButton);
        QCOMPARE(window.delegate->installs.size(), 1);
        QCOMPARE(window.delegate->installs.first(), (QList<CopyCommand>{commandFor(0), commandFor(1), commandFor(2)}));
        QTest::mouseClick(window.list->refreshButton(), Qt::LeftButton);
        QTest::mouseClick(window.list->openThemeDirectoryButton(), Qt::LeftButton);
        QCOMPARE(window.delegate->refreshes, 1);
        QCOMPARE(window.delegate->opens, 1);

        QTest::mouseClick(window.cell(1)->updateButton(), Qt::LeftButton);
        QCOMPARE(window.delegate->installs.last(), QList<CopyCommand>{commandFor(1)});

        // Update All with no rows still asks, with an empty batch.
        window.list->tableViewModel().setEntries({});
        window.list->updateAll();
        QCOMPARE(window.delegate->installs.last(), QList<CopyCommand>{});
    }

    void withoutDelegateNothingHappens()
    {
        ListWindow window;
        window.show(rows(2));
        ThemeCellView* cell = window.cell(0);
        window.delegate.reset(); // the list held it weakly: it is gone
        QVERIFY(!window.list->delegate());
        window.list->updateAll();
        window.list->refresh();
        window.list->openThemeDirectory();
        QTest::mouseClick(cell->updateButton(), Qt::LeftButton);

        // A cell whose list is gone, or that was never configured, does nothing either.
        ThemeCellView loose;
        loose.updateTheme();
        loose.setDelegate(window.list);
        loose.updateTheme();
    }

    void cellsShowNewThemesAndUpdates_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("second");
        QTest::newRow("update, then reused for a new theme") << 0 << 1;
        QTest::newRow("new theme, then reused for an update") << 1 << 2;
    }

    void cellsShowNewThemesAndUpdates()
    {
        QFETCH(int, first);
        QFETCH(int, second);
        const QList<ThemeEntry> list = entries(3);
        QWidget window;
        auto cell = new ThemeCellView(&window);
        window.show();
        for (const int row : {first, second}) {
            const ThemeEntry& entry = list.at(row);
            cell->configure(entry);
            const bool update = entry.installedVersion.has_value();
            QCOMPARE(cell->themeNameLabel()->text(), entry.name);
            QCOMPARE(cell->styleLabel()->text(), entry.style);
            QCOMPARE(cell->authorsLabel()->text(), entry.authors);
            QCOMPARE(cell->updateButton()->text(), update ? QStringLiteral("Update") : QStringLiteral("Install"));
            QCOMPARE(cell->updateButton()->accessibleName(),
                     (update ? QStringLiteral("Update ") : QStringLiteral("Install ")) + entry.name);
            QCOMPARE(cell->versionLabel()->fromVersionLabel()->isVisible(), update);
            QCOMPARE(cell->versionLabel()->arrow()->isVisible(), update);
            if (update)
                QCOMPARE(cell->versionLabel()->fromVersionLabel()->text(), *entry.installedVersion);
            QCOMPARE(cell->versionLabel()->toVersionLabel()->text(), entry.remoteVersion);
            QCOMPARE(cell->copyCommand(), std::optional(entry.copyCommand));
        }
    }

    void onlyRowsOnScreenHaveCells()
    {
        ListWindow window;
        window.show(rows(10000));
        QCoreApplication::processEvents();
        ThemeTableView& table = window.table();
        const int onScreen = table.viewport()->height() / table.rowHeight() + 2;
        QVERIFY2(table.cellsMade() <= onScreen + 1, qPrintable(QString::number(table.cellsMade())));
        QCOMPARE(table.rowsWithCells().first(), 0);

        // Scrolling hands the same few cells to the rows that come in, each configured for its row.
        QScrollBar* bar = table.verticalScrollBar();
        for (int step = 0; step < 40; ++step)
            bar->setValue(bar->value() + bar->pageStep() / 3);
        bar->setValue(bar->maximum());
        QCoreApplication::processEvents();
        QVERIFY2(table.cellsMade() <= onScreen + 1, qPrintable(QString::number(table.cellsMade())));
        const QList<int> shown = table.rowsWithCells();
        QCOMPARE(shown.last(), 9999);
        for (int row : shown)
            QCOMPARE(window.cell(row)->themeNameLabel()->text(), QStringLiteral("Theme %1").arg(row));
    }

    void theKeyboardReachesEveryRow()
    {
        ListWindow window;
        window.window.activateWindow();
        window.show(rows(200));
        QCoreApplication::processEvents();
        QVERIFY(window.table().focusRow(0, Qt::TabFocusReason));
        for (int i = 0; i < 30; ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QCOMPARE(window.table().focusedRow(), 30);
        QCOMPARE(QApplication::focusWidget(), window.cell(30)->updateButton());

        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(window.table().focusedRow(), 31);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
        QCOMPARE(window.table().focusedRow(), 199);
        // From the last row Tab leaves the list for its buttons, and comes back around to the rows.
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), window.list->openThemeDirectoryButton());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), window.list->updateAllButton());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const int entered = window.table().focusedRow();
        QVERIFY(entered > 0);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QCOMPARE(window.table().focusedRow(), entered - 1);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
        QCOMPARE(window.table().focusedRow(), 0);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), window.list->updateAllButton());
    }

    void aRowWhoseViewIsNotACellGetsNone()
    {
        ListWindow window;
        window.list->tableViewModel().setEntries(entries(5));
        ThemeTableView other;
        other.registerView(ThemeCellView::reuseIdentifier, [] { return new QLabel; });
        other.setModel(&window.list->tableViewModel());
        other.setViewProvider([&](ThemeTableView& table, int row) { return window.list->viewForRow(table, row); });
        other.resize(400, 300);
        other.show();
        QCoreApplication::processEvents();
        QVERIFY(other.rowsWithCells().isEmpty());
    }
};

QTEST_MAIN(ThemeListViewControllerTest)
#include "ThemeListViewControllerTest.moc"
