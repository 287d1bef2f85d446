// SPDX-License-Identifier: MIT
// The assembled updater against real repositories: real files, a Trash of its own, the real window off
// screen and the real alerts answered from the test; and corvane show as a script runs it.
#include "Corvane/module/CorvaneModule.h"
#include "Corvane/ui/LoadingViewController.h"

#include "ThemeFiles.h"
#include "TrashSandbox.h"
#include "UpdaterScene.h"
#include "presentation/AlertAnswerer.h"

#include <QImage>
#include <QProcess>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSettings>
#include <QTemporaryDir>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;
using Answer = AlertAnswerer::Answer;

namespace {

// Fetching: the list has no outcome yet and the loading overlay's indicator runs.
bool loading(const Updater& updater)
{
    return !updater.settled() && updater.list->loadingViewController()->isIndicatorRunning();
}

} // namespace

class CorvaneWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path()); }

    void showListsThenARowAndUpdateAllInstall()
    {
        TrashSandbox trash;
        Updater updater(1);
        updater.create(updater.remote.fileUrl());
        QVERIFY(!QFile::exists(updater.clone)); // nothing is fetched before show()
        updater.wireframe->show();
        QVERIFY(updater.wireframe->isVisible() && loading(updater));
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(updater.rows(), QStringList({u"Theme 000"_s, u"Harbor Night"_s})); // new themes first

        const QByteArray old = readFile(updater.installed + u"/harbor-night.theme.json"_s);
        QTest::qWait(QApplication::doubleClickInterval()); // a press on rows that just moved installs nothing
        QTest::mouseClick(updater.cell(1)->updateButton(), Qt::LeftButton);
        QCOMPARE(readFile(updater.installed + u"/harbor-night.theme.json"_s),
                 readFile(updater.remote.themesDirectory() + u"/harbor-night.theme.json"_s));
        QCOMPARE(trash.trashedNames(), QStringList{u"harbor-night.theme.json"_s});
        QCOMPARE(readFile(trash.filesDirectory() + u"/harbor-night.theme.json"_s), old);
        QVERIFY(loading(updater));
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(updater.rows(), QStringList{u"Theme 000"_s});

        QTest::mouseClick(updater.list->updateAllButton(), Qt::LeftButton);
        QCOMPARE(readFile(updater.installed + u"/theme-000.theme.json"_s),
                 readFile(updater.remote.themesDirectory() + u"/theme-000.theme.json"_s));
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(updater.rows(), QStringList{});
    }

    void anInstallKeepsThePlaceAndIgnoresPressesOnMovingRows()
    {
        TrashSandbox trash;
        Updater updater(41);
        updater.open(updater.remote.fileUrl());
        QTRY_VERIFY_WITH_TIMEOUT(updater.list->refreshButton()->isEnabled(), comparisonTimeout); // the rows just came
        ThemeTableView* table = updater.list->themeTableView();
        QScrollBar* scroll = table->verticalScrollBar();
        scroll->setValue(table->rowHeight() * 20 + 7);
        const int acted = table->firstVisibleRow() + 2; // a row of the new themes, under their header
        const int actedEntry = updater.list->tableViewModel().entryIndex(acted);
        QVERIFY(actedEntry >= 0);
        const QStringList before = updater.rows();
        const CopyCommand other = updater.list->tableViewModel().entries().at(actedEntry + 1).copyCommand;

        updater.list->installTheme(other); // the rows just moved: a press now could be meant for another row
        QCOMPARE(QDir(updater.installed).entryList(QDir::Files).size(), 1); // Harbor Night only, as before
        QTest::qWait(QApplication::doubleClickInterval());
        auto cell = qobject_cast<ThemeCellView*>(table->cellForRow(acted));
        QTest::mouseClick(cell->updateButton(), Qt::LeftButton);
        QVERIFY(loading(updater));
        updater.list->installTheme(other); // while the list reloads
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);

        QStringList expected = before;
        expected.removeAt(actedEntry);
        QCOMPARE(updater.rows(), expected); // only the acted-on theme was installed
        QCOMPARE(scroll->value(), table->rowHeight() * 20 + 7); // the rows around it stayed in place
        QCOMPARE(table->focusedRow(), acted);                     // its successor has the focus
    }

    void aCloneThatMovedUnderTheWindowInstallsOnlyWhatTheRowsShowed_data()
    {
        QTest::addColumn<bool>("renamed"); // Harbor Night's file renamed upstream, else Theme 000's version raised
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("rows"); // after the refresh that follows
        QTest::newRow("a version raised upstream") << false << QStringList{u"harbor-night.theme.json"_s}
                                                   << QStringList{u"Theme 000 2.1.0"_s, u"Harbor Night 1.10.0"_s};
        QTest::newRow("a file renamed upstream")
            << true << QStringList{u"harbor-night.theme.json"_s, u"theme-000.theme.json"_s}
            << QStringList{u"Harbor Night 1.10.0"_s};
    }

    void aCloneThatMovedUnderTheWindowInstallsOnlyWhatTheRowsShowed()
    {
        QFETCH(bool, renamed);
        TrashSandbox trash;
        Updater updater(1);
        AlertAnswerer alerts;
        updater.open(updater.remote.fileUrl());
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        const QByteArray oldHarborNight = readFile(updater.installed + u"/harbor-night.theme.json"_s);

        // Upstream moves on, and the host's repository check brings the same clone along.
        const QString themes = updater.remote.themesDirectory();
        if (renamed)
            QVERIFY(QFile::rename(themes + u"/harbor-night.theme.json"_s, themes + u"/harbor-night-2.theme.json"_s));
        else
            writeTheme(themes, u"theme-000.theme.json"_s, u"Theme 000"_s, u"light"_s, {}, u"2.1.0"_s);
        updater.remote.commitAll(u"Moved on"_s);
        bool checked = false;
        CorvaneModule(Configuration(updater.remote.fileUrl(), QUrl::fromLocalFile(updater.clone),
                                    QUrl::fromLocalFile(updater.installed)))
            .hasUpdates(std::nullopt, [&](const ThemeRepositoryStatus&) { checked = true; });
        QTRY_VERIFY_WITH_TIMEOUT(checked, comparisonTimeout);

        updater.list->updateAll(); // the rows still show Theme 000 1.0.0 and Harbor Night 1.10.0
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(alerts.seen().size(), 0); // a stale list is no copying failure
        QTEST(QDir(updater.installed).entryList(QDir::Files), "installed");
        if (!renamed) // Theme 000 was not installed at 2.1.0, which no row showed; Harbor Night not reached
            QCOMPARE(readFile(updater.installed + u"/harbor-night.theme.json"_s), oldHarborNight);
        QStringList rows;
        for (const ThemeEntry& entry : updater.list->tableViewModel().entries())
            rows << entry.name + u' ' + entry.remoteVersion;
        QTEST(rows, "rows");
    }

    void theHostHearsOfInstallsAndOfTheWindowClosing()
    {
        TrashSandbox trash;
        Updater updater(1);
        QWidget host;
        host.setGeometry(100, 100, 800, 600);
        QSettings hostSettings(updater.directory.filePath(u"host.ini"_s), QSettings::IniFormat);
        auto updaterOfHost = CorvaneModule(Configuration(updater.remote.fileUrl(), QUrl::fromLocalFile(updater.clone),
                                                         QUrl::fromLocalFile(updater.installed)))
                                 .corvane(&host, &hostSettings);
        QSignalSpy installed(updaterOfHost.get(), &UpdatesThemes::themesInstalled);
        QSignalSpy closed(updaterOfHost.get(), &UpdatesThemes::closed);
        auto wireframe = static_cast<CorvaneWireframe*>(updaterOfHost.get());
        ThemeListViewController* list = wireframe->windowController()->listViewController();
        QCOMPARE(wireframe->windowController()->window()->parentWidget(), &host); // transient for the host's window

        updaterOfHost->show();
        QTRY_VERIFY_WITH_TIMEOUT(list->refreshButton()->isEnabled(), comparisonTimeout);
        list->updateAll();
        QTRY_COMPARE(installed.size(), 1);
        QCOMPARE(installed.at(0).at(0).toStringList(),
                 QStringList({updater.installed + u"/theme-000.theme.json"_s,
                              updater.installed + u"/harbor-night.theme.json"_s}));
        QCOMPARE(closed.size(), 0);
        updaterOfHost->close();
        QCOMPARE(closed.size(), 1);
        updaterOfHost->close(); // already closed: no second signal
        QCOMPARE(closed.size(), 1);
        hostSettings.sync();
        QVERIFY(!hostSettings.value(u"Corvane/windowGeometry"_s).toByteArray().isEmpty()); // the host's settings
    }

    void aFailedComparisonOffersRetryThenIgnore()
    {
        Updater updater(1);
        updater.create(QUrl::fromLocalFile(updater.directory.filePath(u"nowhere"_s)));
        AlertAnswerer alerts({Answer::second, Answer::first}); // Retry, then Ignore
        bool loadingAgain = false;
        connect(updater.wireframe->windowController().get(), &CorvaneWindowController::themeEntriesShown, &alerts,
                [&](bool loading) { loadingAgain |= loading && alerts.seen().size() == 1; });
        updater.wireframe->show();
        QTRY_VERIFY_WITH_TIMEOUT(alerts.seen().size() == 2, comparisonTimeout);
        QVERIFY(loadingAgain);
        QTRY_VERIFY(updater.settled());
        QCOMPARE(alerts.seen().size(), 2);
        QVERIFY2(alerts.seen().last()[2].startsWith("Computing theme differences failed"_L1),
                 qPrintable(alerts.seen().last()[2])); // the detail
        QCOMPARE(updater.rows(), QStringList{});
    }

#ifdef CORVANE_TOOL
    void showCommandScreenshot_data()
    {
        QTest::addColumn<bool>("reachable");
        QTest::addColumn<QString>("screenshot");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("error"); // a part of the standard error; "" for no word from corvane
        QTest::newRow("rows") << true << "rows.png" << 0 << "";
        QTest::newRow("a failed refresh, captured with its alert")
            << false << "failed.png" << 1 << "Computing theme differences failed";
    }

    void showCommandScreenshot()
    {
        QFETCH(bool, reachable);
        QFETCH(QString, screenshot);
        QFETCH(QString, error);
        const Updater updater(1);
        const QString remote = reachable ? updater.remote.path() : updater.directory.filePath(u"nowhere"_s);
        QProcess process; // off screen, as this test
        process.start(QStringLiteral(CORVANE_TOOL), {u"show"_s, u"--remote"_s, remote,
                                                     u"--clone"_s, updater.clone, u"--installed"_s, updater.installed,
                                                     u"--screenshot"_s, updater.directory.filePath(screenshot)});
        QVERIFY(process.waitForFinished(120000));
        const QString standardError = QString::fromUtf8(process.readAllStandardError());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QTEST(process.exitCode(), "status");
        QVERIFY2(error.isEmpty() ? !standardError.contains("corvane"_L1) : standardError.contains(error),
                 qPrintable(standardError));
        const QImage image(updater.directory.filePath(screenshot));
        QVERIFY(image.width() >= 440 && image.height() >= 300);
    }
#endif

private:
    QTemporaryDir m_settings; // where the window remembers its frame, not in the user's settings
};

QTEST_MAIN(CorvaneWindowTest)
#include "CorvaneWindowTest.moc"
