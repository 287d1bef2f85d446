// SPDX-License-Identifier: MIT
// The updater as a host drives it through UpdatesThemes, over a real repository and the real window off
// screen: showing, closing and showing again, two updaters at once, letting go of one; and the requests of
// the window that reach the event handler without an alert.
#include "Corvane/module/CorvaneModule.h"
#include "Corvane/module/CorvaneWireframe.h"
#include "Corvane/presentation/ThemeEntryEventHandler.h"
#include "Corvane/presentation/ThemeEntryPresenter.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeCellView.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"
#include "Corvane/ui/ThemeUpdatesWidget.h"

#include "GitRepositoryFixture.h"
#include "ThemeFiles.h"

#include <QApplication>
#include <QDesktopServices>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;

namespace {

constexpr int comparisonTimeout = 30000;

// A remote repository with Paper Mint, and the locations of an updater over it.
struct Remote {
    QTemporaryDir directory;
    GitRepositoryFixture repository{directory.filePath(u"remote"_s)};

    Remote()
    {
        addTheme(u"Paper Mint"_s);
    }
    void addTheme(const QString& name)
    {
        writeTheme(repository.themesDirectory(), name.toLower().replace(u' ', u'-') + ".theme.json"_L1, name, u"light"_s,
                   {}, u"1.0.0"_s);
        repository.commitAll(name);
    }
    // Each updater gets its own clone and installed-themes directory unless told otherwise.
    Configuration configuration(const QString& name = u"host"_s) const
    {
        return Configuration(repository.fileUrl(), QUrl::fromLocalFile(directory.filePath(name + "/clone"_L1)),
                             QUrl::fromLocalFile(directory.filePath(name + "/installed themes #1"_L1)));
    }
};

// What the host holds, and the parts of it a test looks at.
struct Updater {
    std::unique_ptr<UpdatesThemes> updatesThemes;
    CorvaneWireframe* wireframe;
    QPointer<QWidget> window;
    ThemeListViewController* list;
    std::unique_ptr<QSignalSpy> shown; // each display state the window takes: loading, rows or failure

    explicit Updater(const Configuration& configuration)
        : updatesThemes(CorvaneModule(configuration).corvane())
        , wireframe(dynamic_cast<CorvaneWireframe*>(updatesThemes.get()))
        , window(wireframe->windowController()->window())
        , list(wireframe->windowController()->listViewController())
        , shown(std::make_unique<QSignalSpy>(wireframe->windowController().get(),
                                             &CorvaneWindowController::themeEntriesShown))
    {
    }
    int refreshes() const
    {
        int loading = 0;
        for (const QList<QVariant>& state : *shown)
            loading += state.at(0).toBool();
        return loading;
    }
    bool settled() const { return !shown->isEmpty() && !shown->last().at(0).toBool(); }
    QStringList rows() const
    {
        QStringList names;
        for (const ThemeEntry& entry : list->tableViewModel().entries())
            names << entry.name;
        return names;
    }
};

} // namespace

class UpdaterLifecycleTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path()); }

    // A host's settings page holds the list itself: no window of its own, left where the page lays it
    // out, listing on its first show, installing with a row's button and telling the host what it wrote.
    void theListWorksEmbeddedInAHostsPage()
    {
        Remote remote;
        auto page = std::make_unique<QWidget>();
        auto widget = new ThemeUpdatesWidget(remote.configuration(u"page"_s), page.get());
        (new QVBoxLayout(page.get()))->addWidget(widget);
        QSignalSpy installed(widget, &ThemeUpdatesWidget::themesInstalled);
        page->resize(700, 500);
        page->show();
        QVERIFY(!widget->isWindow());
        auto list = widget->findChild<ThemeListViewController*>();
        QTRY_VERIFY_WITH_TIMEOUT(list->refreshButton()->isEnabled() && !list->isAnimating(), comparisonTimeout);
        QCOMPARE(list->tableViewModel().entries().size(), 1);
        const QRect where = widget->geometry();
        QTest::qWait(QApplication::doubleClickInterval()); // rows that just moved take no press
        const int row = list->tableViewModel().rowOfEntry(0); // below its section's header
        qobject_cast<ThemeCellView*>(list->themeTableView()->cellForRow(row))->updateButton()->click();
        QTRY_COMPARE_WITH_TIMEOUT(installed.size(), 1, comparisonTimeout);
        const QString written = installed.first().first().toStringList().value(0);
        QVERIFY2(written.endsWith(u"/paper-mint.theme.json"_s) && QFile::exists(written), qPrintable(written));
        QCOMPARE(widget->geometry(), where);
        QVERIFY(QSettings().childGroups().isEmpty()); // a page keeps no window frame

        // Dropped with its page while a comparison runs: the late answer reaches nothing.
        remote.addTheme(u"Nordlys"_s);
        widget->refresh();
        page.reset();
        QTest::qWait(200);
    }

    void showingAgainRefreshesTheSameWindow_data()
    {
        QTest::addColumn<bool>("closedFirst");
        QTest::newRow("closed, then shown") << true;
        QTest::newRow("shown while visible") << false;
    }

    void showingAgainRefreshesTheSameWindow()
    {
        QFETCH(bool, closedFirst);
        Remote remote;
        Updater updater(remote.configuration());
        QVERIFY(!updater.updatesThemes->isVisible()); // made, not shown
        updater.updatesThemes->show();
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(updater.rows(), QStringList{u"Paper Mint"_s});
        if (closedFirst) {
            updater.updatesThemes->close();
            QVERIFY(!updater.updatesThemes->isVisible());
            QVERIFY(updater.window); // closing keeps the window and its graph
        }
        remote.addTheme(u"Harbor Day"_s);
        updater.updatesThemes->show();
        QVERIFY(updater.updatesThemes->isVisible());
        QCOMPARE(updater.wireframe->windowController()->window(), updater.window.data());
        QCOMPARE(updater.refreshes(), 2);
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(updater.rows(), QStringList({u"Harbor Day"_s, u"Paper Mint"_s}));
    }

    // Two updaters of one module share only the directories on disk: closing or dropping one leaves the
    // other as it was.
    void twoUpdatersAreIndependent()
    {
        Remote remote;
        const CorvaneModule module(remote.configuration());
        Updater first(module.configuration()), second(module.configuration());
        QVERIFY(first.window != second.window);
        QVERIFY(first.wireframe->presenter() != second.wireframe->presenter());
        QVERIFY(first.wireframe->eventHandler() != second.wireframe->eventHandler());
        first.updatesThemes->show();
        QTRY_VERIFY_WITH_TIMEOUT(first.settled(), comparisonTimeout);
        second.updatesThemes->show();
        QTRY_VERIFY_WITH_TIMEOUT(second.settled(), comparisonTimeout);
        QCOMPARE(first.refreshes(), 1);

        first.updatesThemes->close();
        QVERIFY(!first.updatesThemes->isVisible() && second.updatesThemes->isVisible());
        first.updatesThemes.reset();
        QTRY_VERIFY(!first.window);
        QVERIFY(second.window && second.updatesThemes->isVisible());
        QTest::mouseClick(second.list->refreshButton(), Qt::LeftButton); // still wired to its own handler
        QCOMPARE(second.refreshes(), 2);
        QTRY_VERIFY_WITH_TIMEOUT(second.settled(), comparisonTimeout);
        QCOMPARE(second.rows(), QStringList{u"Paper Mint"_s});
    }

    void droppingTheUpdaterReleasesItsWholeGraph_data()
    {
        QTest::addColumn<bool>("midComparison");
        QTest::newRow("idle") << false;
        QTest::newRow("mid-comparison, whose result then goes nowhere") << true;
    }

    void droppingTheUpdaterReleasesItsWholeGraph()
    {
        QFETCH(bool, midComparison);
        Remote remote;
        Updater updater(remote.configuration());
        updater.updatesThemes->show();
        if (!midComparison)
            QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        const std::weak_ptr presenter = updater.wireframe->presenter();
        const std::weak_ptr eventHandler = updater.wireframe->eventHandler();
        const std::weak_ptr windowController = updater.wireframe->windowController();
        const QPointer<ThemeListViewController> list = updater.list;
        updater.updatesThemes.reset();
        QVERIFY(presenter.expired() && eventHandler.expired() && windowController.expired());
        QTRY_VERIFY(!updater.window && !list);
        if (midComparison) { // the comparison runs to its end
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(remote.directory.filePath(u"host/clone/Themes"_s)), comparisonTimeout);
            QTest::qWait(200);
        }
    }

    void aWindowControllerWithoutAWindowIsNotVisible()
    {
        const CorvaneWireframe wireframe(nullptr, nullptr, std::make_shared<CorvaneWindowController>());
        QVERIFY(!wireframe.isVisible());
    }

    void openThemeFolderOpensTheInstalledThemesDirectory()
    {
        Remote remote;
        Updater updater(remote.configuration());
        updater.updatesThemes->show();
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QDesktopServices::setUrlHandler(u"file"_s, this, "open");
        QTest::mouseClick(updater.list->openThemeDirectoryButton(), Qt::LeftButton);
        QDesktopServices::unsetUrlHandler(u"file"_s);
        QCOMPARE(m_opened, QList{remote.configuration().installedThemeDirectory()});
        QCOMPARE(updater.refreshes(), 1); // opening the folder changes nothing else
    }

    void installingAnEmptyListCopiesNothingAndRefreshes()
    {
        Remote remote;
        Updater updater(remote.configuration());
        updater.updatesThemes->show();
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        const QString installed = remote.configuration().installedThemeDirectory().toLocalFile();
        updater.wireframe->eventHandler()->installThemes({});
        QCOMPARE(updater.refreshes(), 2);
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(QDir(installed).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{});
        QCOMPARE(updater.rows(), QStringList{u"Paper Mint"_s});
    }

public slots:
    void open(const QUrl& url) { m_opened << url; } // what would open in the file browser

private:
    QTemporaryDir m_settings; // where the window remembers its frame, not in the user's settings
    QList<QUrl> m_opened;
};

QTEST_MAIN(UpdaterLifecycleTest)
#include "UpdaterLifecycleTest.moc"
