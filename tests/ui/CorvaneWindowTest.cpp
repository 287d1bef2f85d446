// The assembled updater against real repositories: real clones, real files, the real Trash of a
// sandbox, the real window off screen, and the real modal alerts answered as a person would.
#include "Corvane/module/CorvaneModule.h"
#include "Corvane/module/CorvaneWireframe.h"
#include "Corvane/presentation/ThemeEntryEventHandler.h"
#include "Corvane/presentation/ThemeEntryPresenter.h"
#include "Corvane/ui/AllUpdatedViewController.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/ThemeCellView.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"

#include "GitRepositoryFixture.h"
#include "ThemeFiles.h"
#include "TrashSandbox.h"
#include "presentation/AlertAnswerer.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace corvane;
using namespace corvane::test;
using Answer = AlertAnswerer::Answer;

namespace {

constexpr int comparisonTimeout = 30000;

// A remote repository with two themes, its clone-to-be and an installed-themes directory holding an
// older Harbor Night: the window offers Paper Mint as new and Harbor Night as an update.
struct Sandbox {
    QTemporaryDir directory;
    GitRepositoryFixture remote{directory.filePath(QStringLiteral("remote"))};
    QString clone = directory.filePath(QStringLiteral("clone"));
    QString installed = directory.filePath(QStringLiteral("installed"));

    Sandbox()
    {
        writeTheme(remote.themesDirectory(), QStringLiteral("harbor-night.theme.json"), QStringLiteral("Harbor Night"),
                   QStringLiteral("dark"), {QStringLiteral("Ann"), QStringLiteral("Bo")}, QStringLiteral("1.10"));
        writeTheme(remote.themesDirectory(), QStringLiteral("paper-mint.theme.json"), QStringLiteral("Paper Mint"),
                   QStringLiteral("light"), {QStringLiteral("Cy")}, QStringLiteral("2.0.0"));
        remote.commitAll(QStringLiteral("Two themes"));
        writeTheme(installed, QStringLiteral("harbor-night.theme.json"), QStringLiteral("Harbor Night"),
                   QStringLiteral("dark"), {QStringLiteral("Ann")}, QStringLiteral("1.2"));
    }

    Configuration configuration() const
    {
        return Configuration(remote.fileUrl(), QUrl::fromLocalFile(clone), QUrl::fromLocalFile(installed));
    }
    QString installedFile(const QString& name) const { return QDir(installed).filePath(name); }
    QString remoteFile(const QString& name) const { return QDir(remote.themesDirectory()).filePath(name); }
};

ThemeListViewController& listOf(const CorvaneWireframe& wireframe)
{
    return *wireframe.windowController()->listViewController();
}

QStringList rowNames(const ThemeListViewController& list)
{
    QStringList names;
    for (const ThemeEntry& entry : list.tableViewModel().entries())
        names << entry.name;
    return names;
}

// The list has taken a comparison's outcome: refresh is enabled only then.
bool settled(const ThemeListViewController& list)
{
    return list.refreshButton()->isEnabled();
}

ThemeCellView* cellAt(const ThemeListViewController& list, int row)
{
    return qobject_cast<ThemeCellView*>(list.themeTableView()->cellForRow(row));
}

bool isLoading(const ThemeListViewController& list)
{
    return !list.refreshButton()->isEnabled() && !list.updateAllButton()->isEnabled()
        && !list.loadingViewController()->isHidden() && list.loadingViewController()->isIndicatorRunning();
}

} // namespace

class CorvaneWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_settings.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
    }

    void showLoadsThenListsNewThemesBeforeUpdates()
    {
        Sandbox sandbox;
        const auto wireframe = CorvaneWireframe::create(sandbox.configuration());
        ThemeListViewController& list = listOf(*wireframe);
        QVERIFY(!QFileInfo::exists(sandbox.clone)); // nothing is fetched before show()

        wireframe->show();
        QVERIFY(wireframe->isVisible());
        QVERIFY(isLoading(list));
        QCOMPARE(list.tableViewModel().entries().size(), 0);
        QVERIFY(list.openThemeDirectoryButton()->isEnabled());

        QTRY_VERIFY_WITH_TIMEOUT(settled(list), comparisonTimeout);
        QCOMPARE(rowNames(list), QStringList({QStringLiteral("Paper Mint"), QStringLiteral("Harbor Night")}));
        QVERIFY(list.updateAllButton()->isEnabled());

        ThemeCellView* fresh = cellAt(list, 0);
        ThemeCellView* update = cellAt(list, 1);
        QVERIFY(fresh && update);
        QCOMPARE(fresh->updateButton()->text(), QStringLiteral("Install"));
        QCOMPARE(fresh->styleLabel()->text(), QStringLiteral("Light"));
        QCOMPARE(fresh->authorsLabel()->text(), QStringLiteral("Cy"));
        QCOMPARE(update->updateButton()->text(), QStringLiteral("Update"));
        QCOMPARE(update->updateButton()->accessibleName(), QStringLiteral("Update Harbor Night"));
        QCOMPARE(update->authorsLabel()->text(), QStringLiteral("Ann, Bo"));

        // The loading overlay fades away and then stops its indicator.
        QTRY_VERIFY(list.loadingViewController()->isHidden());
        QVERIFY(!list.loadingViewController()->isIndicatorRunning());
        QVERIFY(list.allUpToDateViewController()->isHidden());
    }

    void installingARowCopiesItAndRefreshesWithoutIt()
    {
        TrashSandbox trash;
        Sandbox sandbox;
        const auto wireframe = CorvaneWireframe::create(sandbox.configuration());
        ThemeListViewController& list = listOf(*wireframe);
        wireframe->show();
        QTRY_VERIFY_WITH_TIMEOUT(settled(list), comparisonTimeout);

        // Update Harbor Night: the old file goes to the Trash, the repository's takes its place.
        const QByteArray oldHarbor = readFile(sandbox.installedFile(QStringLiteral("harbor-night.theme.json")));
        QTest::mouseClick(cellAt(list, 1)->updateButton(), Qt::LeftButton);
        QCOMPARE(readFile(sandbox.installedFile(QStringLiteral("harbor-night.theme.json"))),
                 readFile(sandbox.remoteFile(QStringLiteral("harbor-night.theme.json"))));
        QCOMPARE(trash.trashedNames(), QStringList{QStringLiteral("harbor-night.theme.json")});
        QCOMPARE(readFile(QDir(trash.filesDirectory()).filePath(QStringLiteral("harbor-night.theme.json"))), oldHarbor);

        QVERIFY(isLoading(list));
        QTRY_VERIFY_WITH_TIMEOUT(settled(list), comparisonTimeout);
        QCOMPARE(rowNames(list), QStringList{QStringLiteral("Paper Mint")});

        // The keyboard reaches the row's button as well.
        cellAt(list, 0)->updateButton()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(cellAt(list, 0)->updateButton(), Qt::Key_Space);
        QVERIFY(QFileInfo::exists(sandbox.installedFile(QStringLiteral("paper-mint.theme.json"))));
        QTRY_VERIFY_WITH_TIMEOUT(settled(list), comparisonTimeout);
        QCOMPARE(rowNames(list), QStringList{});
    }

    void updateAllInstallsEveryRowThenShowsAllUpToDate()
    {
        TrashSandbox trash;
        Sandbox sandbox;
        const auto wireframe = CorvaneWireframe::create(sandbox.configuration());
        ThemeListViewController& list = listOf(*wireframe);
        wireframe->show();
        QTRY_VERIFY_WITH_TIMEOUT(settled(list), comparisonTimeout);

        QTest::mouseClick(list.updateAllButton(), Qt::LeftButton);
        for (const QString& file : {QStringLiteral("harbor-night.theme.json"), QStringLiteral("paper-mint.theme.json")})
            QCOMPARE(readFile(sandbox.installedFile(file)), readFile(sandbox.remoteFile(file)));
        QTRY_VERIFY_WITH_TIMEOUT(settled(list), comparisonTimeout);
        QCOMPARE(rowNames(list), QStringList{});
        QVERIFY(!list.updateAllButton()->isEnabled());

        // All up to date: that overlay covers the list first, and only then the loading one fades.
        QVERIFY(!list.allUpToDateViewController()->isHidden());
        QVERIFY(!list.loadingViewController()->isHidden());
        QTRY_VERIFY(list.loadingViewController()->isHidden());
        QCOMPARE(list.allUpToDateViewController()->opacity(), 1.0);
    }

    void failedComparisonOffersRetryThenIgnore()
    {
        Sandbox sandbox;
        const Configuration broken(QUrl::fromLocalFile(sandbox.directory.filePath(QStringLiteral("no-such-repository"))),
                                   QUrl::fromLocalFile(sandbox.clone), QUrl::fromLocalFile(sandbox.installed));
        const auto wireframe = CorvaneWireframe::create(broken);
        ThemeListViewController& list = listOf(*wireframe);

        AlertAnswerer alerts({Answer::second});
        bool loadingAgain = false;
        QObject::connect(wireframe->windowController().get(), &CorvaneWindowController::themeEntriesShown, &alerts,
                         [&](bool loading) { loadingAgain |= loading && alerts.seen().size() == 1; });
        wireframe->show();
        QTRY_VERIFY_WITH_TIMEOUT(alerts.seen().size() == 2, comparisonTimeout);
        QVERIFY(loadingAgain); // Retry started over with the loading state
        QTRY_VERIFY(settled(list));

        for (const auto& alert : alerts.seen()) {
            QCOMPARE(alert.title, QStringLiteral("Update Error"));
            QCOMPARE(alert.message, QStringLiteral("Themes from the server could not be updated."));
            QCOMPARE(alert.buttons, QStringList({QStringLiteral("Ignore"), QStringLiteral("Retry")}));
            QVERIFY2(alert.detail.startsWith(QStringLiteral("Computing theme differences failed")), qPrintable(alert.detail));
        }
        QCOMPARE(alerts.unexpected(), 1); // the second alert was answered Ignore
        QCOMPARE(rowNames(list), QStringList{});
        QVERIFY(list.refreshButton()->isEnabled());
        QVERIFY(!list.updateAllButton()->isEnabled());
        QTRY_VERIFY(list.loadingViewController()->isHidden());
        QVERIFY(list.allUpToDateViewController()->isHidden());
    }

    void failedCopyCanResetTheLocalDirectories_data()
    {
        QTest::addColumn<bool>("deleteLocalThemes");
        QTest::newRow("Continue") << false;
        QTest::newRow("Delete Local Themes") << true;
    }

    void failedCopyCanResetTheLocalDirectories()
    {
        QFETCH(bool, deleteLocalThemes);
        TrashSandbox trash;
        Sandbox sandbox;
        const auto wireframe = CorvaneWireframe::create(sandbox.configuration());
        ThemeListViewController& list = listOf(*wireframe);
        wireframe->show();
        QTRY_VERIFY_WITH_TIMEOUT(settled(list), comparisonTimeout);

        // The clone lost the file since the list was made: the copy cannot succeed.
        QVERIFY(QFile::remove(QDir(sandbox.clone).filePath(QStringLiteral("Themes/paper-mint.theme.json"))));
        AlertAnswerer alerts({deleteLocalThemes ? Answer::second : Answer::first});
        QTest::mouseClick(list.updateAllButton(), Qt::LeftButton);

        QCOMPARE(alerts.seen().size(), 1);
        QCOMPARE(alerts.seen().first().title, QStringLiteral("Copying Theme Failed"));
        QCOMPARE(alerts.seen().first().message,
                 QStringLiteral("The theme 'paper-mint.theme.json' could not be copied. You can try to delete all "
                                "local themes to start fresh."));
        QCOMPARE(alerts.seen().first().buttons,
                 QStringList({QStringLiteral("Continue"), QStringLiteral("Delete Local Themes")}));
        // The batch stopped at Paper Mint, the first row: Harbor Night was not attempted.
        const QString installedNow = deleteLocalThemes ? QDir(trash.filesDirectory()).filePath(QStringLiteral("installed"))
                                                       : sandbox.installed;
        QVERIFY(readFile(QDir(installedNow).filePath(QStringLiteral("harbor-night.theme.json"))).contains("\"1.2\""));
        // No refresh after a failure, whatever the answer.
        QVERIFY(settled(list));
        QCOMPARE(rowNames(list), QStringList({QStringLiteral("Paper Mint"), QStringLiteral("Harbor Night")}));

        if (deleteLocalThemes) {
            QCOMPARE(trash.trashedNames(), QStringList({QStringLiteral("clone"), QStringLiteral("installed")}));
            QVERIFY(!QFileInfo::exists(sandbox.clone));
            QVERIFY(!QFileInfo::exists(sandbox.installed));
        } else {
            QCOMPARE(trash.trashedNames(), QStringList{});
            QVERIFY(QFileInfo::exists(sandbox.clone));
        }
    }

    void closeAndShowBringTheSameWindowBackWithAFreshList()
    {
        Sandbox sandbox;
        const auto wireframe = CorvaneWireframe::create(sandbox.configuration());
        ThemeListViewController& list = listOf(*wireframe);
        QWidget* window = wireframe->windowController()->window();
        QVERIFY(!wireframe->isVisible());
        wireframe->show();
        QTRY_VERIFY_WITH_TIMEOUT(settled(list), comparisonTimeout);
        wireframe->close();
        QVERIFY(!wireframe->isVisible());
        QVERIFY(wireframe->windowController()->window() == window);

        // The repository moved on meanwhile: the reopened window shows it.
        writeTheme(sandbox.remote.themesDirectory(), QStringLiteral("ember.theme.json"), QStringLiteral("Ember"),
                   QStringLiteral("dark"), {}, QStringLiteral("1.0.0"));
        sandbox.remote.commitAll(QStringLiteral("Ember"));
        wireframe->show();
        QVERIFY(wireframe->isVisible());
        QVERIFY(isLoading(list));
        QTRY_VERIFY_WITH_TIMEOUT(settled(list), comparisonTimeout);
        QCOMPARE(rowNames(list), QStringList({QStringLiteral("Ember"), QStringLiteral("Paper Mint"),
                                              QStringLiteral("Harbor Night")}));
    }

    void aWindowControllerWithoutWindowIsNeverVisible()
    {
        const CorvaneWindowController controller(nullptr);
        QVERIFY(!controller.window());
        QVERIFY(!controller.listViewController());
    }

    void aWindowWhoseContentIsNotTheListHasNoListController()
    {
        auto window = new QWidget;
        auto content = new QLabel(window);
        content->setObjectName(QStringLiteral("contentViewController"));
        const CorvaneWindowController controller(window);
        QCOMPARE(controller.window(), window);
        QVERIFY(!controller.listViewController());
        // A state for a window without its list is dropped, not a crash.
        const_cast<CorvaneWindowController&>(controller).showThemeEntries(std::nullopt);
    }

    void reopeningRestoresTheRememberedFrame()
    {
        Sandbox sandbox;
        QSize remembered;
        {
            const auto wireframe = CorvaneWireframe::create(sandbox.configuration());
            QWidget* window = wireframe->windowController()->window();
            window->show();
            window->resize(window->size() + QSize(83, 61));
            remembered = window->size();
            wireframe->close();
        }
        QSettings settings;
        QVERIFY(settings.contains(QStringLiteral("Corvane/windowGeometry")));
        const auto again = CorvaneWireframe::create(sandbox.configuration());
        QCOMPARE(again->windowController()->window()->size(), remembered);
        settings.remove(QStringLiteral("Corvane"));
    }

    void twoUpdatersShareNothingButTheDisk()
    {
        Sandbox sandbox;
        const CorvaneModule module(sandbox.configuration());
        const auto first = CorvaneWireframe::create(module.configuration());
        const auto second = CorvaneWireframe::create(module.configuration());
        QVERIFY(first->windowController()->window() != second->windowController()->window());
        QVERIFY(first->presenter() != second->presenter());
        QVERIFY(first->eventHandler() != second->eventHandler());
        first->show();
        QVERIFY(!second->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(settled(listOf(*first)), comparisonTimeout);
        QVERIFY(!settled(listOf(*second)) || listOf(*second).tableViewModel().entries().isEmpty());

        const std::unique_ptr<UpdatesThemes> fromModule = module.corvane();
        QVERIFY(dynamic_cast<CorvaneWireframe*>(fromModule.get()));
    }

    void droppingTheWireframeReleasesTheWholeGraph_data()
    {
        QTest::addColumn<bool>("duringComparison");
        QTest::newRow("after the comparison") << false;
        QTest::newRow("while a comparison runs") << true;
    }

    void droppingTheWireframeReleasesTheWholeGraph()
    {
        QFETCH(bool, duringComparison);
        Sandbox sandbox;
        auto wireframe = CorvaneWireframe::create(sandbox.configuration());
        const std::weak_ptr<ThemeEntryPresenter> presenter = wireframe->presenter();
        const std::weak_ptr<ThemeEntryEventHandler> eventHandler = wireframe->eventHandler();
        const std::weak_ptr<CorvaneWindowController> windowController = wireframe->windowController();
        const QPointer<QWidget> window = wireframe->windowController()->window();
        const QPointer<ThemeListViewController> list = wireframe->windowController()->listViewController();
        QPointer<QWidget> cell;

        wireframe->show();
        if (!duringComparison) {
            QTRY_VERIFY_WITH_TIMEOUT(settled(*list), comparisonTimeout);
            cell = cellAt(*list, 0);
            QVERIFY(cell);
        }
        wireframe.reset();

        QVERIFY(presenter.expired());
        QVERIFY(eventHandler.expired());
        QVERIFY(windowController.expired());
        QTRY_VERIFY(!window);
        QVERIFY(!list);
        QVERIFY(!cell);
        if (duringComparison) {
            // The comparison runs to its end and its result goes nowhere.
            QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(QDir(sandbox.clone).filePath(QStringLiteral("Themes"))),
                                     comparisonTimeout);
            QTest::qWait(200);
        }
    }

private:
    QTemporaryDir m_settings;
};

QTEST_MAIN(CorvaneWindowTest)
#include "CorvaneWindowTest.moc"
