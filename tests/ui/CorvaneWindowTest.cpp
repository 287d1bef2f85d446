// SPDX-License-Identifier: MIT
// The assembled updater against real repositories: real files, a Trash of its own, the real window off
// screen and the real alerts answered from the test; and corvane show as a script runs it.
#include "Corvane/module/CorvaneModule.h"
#include "Corvane/module/CorvaneWireframe.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeCellView.h"
#include "Corvane/ui/ThemeTableView.h"

#include "GitRepositoryFixture.h"
#include "ThemeFiles.h"
#include "TrashSandbox.h"
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

constexpr int comparisonTimeout = 30000;

// A remote with Harbor Night 1.10 and Paper Mint, Harbor Night 1.2 installed; the updater over them or nowhere.
struct Updater {
    QTemporaryDir directory;
    GitRepositoryFixture remote{directory.filePath(u"remote"_s)};
    QString clone = directory.filePath(u"clone"_s), installed = directory.filePath(u"installed"_s);
    QUrl remoteUrl;
    std::unique_ptr<CorvaneWireframe> wireframe;
    ThemeListViewController* list;

    explicit Updater(bool reachable = true, int more = 0)
    {
        for (int index = 0; index < more; ++index)
            writeTheme(remote.themesDirectory(), u"more-%1.theme.json"_s.arg(index, 2, 10, QChar(u'0')),
                       u"More %1"_s.arg(index, 2, 10, QChar(u'0')), u"light"_s, {}, u"1.0.0"_s);
        for (const QString& themes : {remote.themesDirectory(), installed})
            writeTheme(themes, u"harbor-night.theme.json"_s, u"Harbor Night"_s, u"dark"_s, {u"Ann"_s},
                       themes == installed ? u"1.2"_s : u"1.10"_s);
        writeTheme(remote.themesDirectory(), u"paper-mint.theme.json"_s, u"Paper Mint"_s, u"light"_s, {}, u"2.0.0"_s);
        remote.commitAll(u"Two themes"_s);
        remoteUrl = reachable ? remote.fileUrl() : QUrl::fromLocalFile(directory.filePath(u"nowhere"_s));
        wireframe = CorvaneWireframe::create(
            Configuration(remoteUrl, QUrl::fromLocalFile(clone), QUrl::fromLocalFile(installed)));
        list = wireframe->windowController()->listViewController();
    }
    QStringList rows() const
    {
        QStringList names;
        for (const ThemeEntry& entry : list->tableViewModel().entries())
            names << entry.name;
        return names;
    }
    // Refresh is enabled only once the list has taken a comparison's outcome.
    bool settled() const { return list->refreshButton()->isEnabled(); }
    bool loading() const { return !settled() && list->loadingViewController()->isIndicatorRunning(); }
    QByteArray file(const QString& directory, const char* name) const { return readFile(directory + u'/' + name); }
};

} // namespace

class CorvaneWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path()); }

    void showListsThenARowAndUpdateAllInstall()
    {
        TrashSandbox trash;
        Updater updater;
        QVERIFY(!QFile::exists(updater.clone)); // nothing is fetched before show()
        updater.wireframe->show();
        QVERIFY(updater.wireframe->isVisible() && updater.loading());
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(updater.rows(), QStringList({u"Paper Mint"_s, u"Harbor Night"_s})); // new themes first

        const QByteArray old = updater.file(updater.installed, "harbor-night.theme.json");
        QTest::qWait(QApplication::doubleClickInterval()); // a press on rows that just moved installs nothing
        auto harborNight = qobject_cast<ThemeCellView*>(
            updater.list->themeTableView()->cellForRow(updater.list->tableViewModel().rowOfEntry(1)));
        QTest::mouseClick(harborNight->updateButton(), Qt::LeftButton);
        QCOMPARE(updater.file(updater.installed, "harbor-night.theme.json"),
                 updater.file(updater.remote.themesDirectory(), "harbor-night.theme.json"));
        QCOMPARE(trash.trashedNames(), QStringList{u"harbor-night.theme.json"_s});
        QCOMPARE(updater.file(trash.filesDirectory(), "harbor-night.theme.json"), old);
        QVERIFY(updater.loading());
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(updater.rows(), QStringList{u"Paper Mint"_s});

        QTest::mouseClick(updater.list->updateAllButton(), Qt::LeftButton);
        QCOMPARE(updater.file(updater.installed, "paper-mint.theme.json"),
                 updater.file(updater.remote.themesDirectory(), "paper-mint.theme.json"));
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(updater.rows(), QStringList{});
    }

    void anInstallKeepsThePlaceAndIgnoresPressesOnMovingRows()
    {
        TrashSandbox trash;
        Updater updater(true, 40);
        updater.wireframe->show();
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
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
        QVERIFY(updater.loading());
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
        QTest::addColumn<bool>("renamed"); // Harbor Night's file renamed upstream, else Paper Mint's version raised
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("rows"); // after the refresh that follows
        QTest::newRow("a version raised upstream") << false << QStringList{u"harbor-night.theme.json"_s}
                                                   << QStringList{u"Paper Mint 2.1.0"_s, u"Harbor Night 1.10.0"_s};
        QTest::newRow("a file renamed upstream")
            << true << QStringList{u"harbor-night.theme.json"_s, u"paper-mint.theme.json"_s}
            << QStringList{u"Harbor Night 1.10.0"_s};
    }

    void aCloneThatMovedUnderTheWindowInstallsOnlyWhatTheRowsShowed()
    {
        QFETCH(bool, renamed);
        TrashSandbox trash;
        Updater updater;
        AlertAnswerer alerts;
        updater.wireframe->show();
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        const QByteArray oldHarborNight = updater.file(updater.installed, "harbor-night.theme.json");

        // Upstream moves on, and the host's repository check brings the same clone along.
        const QString themes = updater.remote.themesDirectory();
        if (renamed)
            QVERIFY(QFile::rename(themes + u"/harbor-night.theme.json"_s, themes + u"/harbor-night-2.theme.json"_s));
        else
            writeTheme(themes, u"paper-mint.theme.json"_s, u"Paper Mint"_s, u"light"_s, {}, u"2.1.0"_s);
        updater.remote.commitAll(u"Moved on"_s);
        bool checked = false;
        CorvaneModule(Configuration(updater.remoteUrl, QUrl::fromLocalFile(updater.clone),
                                    QUrl::fromLocalFile(updater.installed)))
            .hasUpdates(std::nullopt, [&](const ThemeRepositoryStatus&) { checked = true; });
        QTRY_VERIFY_WITH_TIMEOUT(checked, comparisonTimeout);

        updater.list->updateAll(); // the rows still show Paper Mint 2.0.0 and Harbor Night 1.10.0
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(alerts.seen().size(), 0); // a stale list is no copying failure
        QTEST(QDir(updater.installed).entryList(QDir::Files), "installed");
        if (!renamed) // Paper Mint was not installed at 2.1.0, which no row showed; Harbor Night not reached
            QCOMPARE(updater.file(updater.installed, "harbor-night.theme.json"), oldHarborNight);
        QStringList rows;
        for (const ThemeEntry& entry : updater.list->tableViewModel().entries())
            rows << entry.name + u' ' + entry.remoteVersion;
        QTEST(rows, "rows");
    }

    void theHostHearsOfInstallsAndOfTheWindowClosing()
    {
        TrashSandbox trash;
        Updater updater;
        QWidget host;
        host.setGeometry(100, 100, 800, 600);
        QSettings hostSettings(updater.directory.filePath(u"host.ini"_s), QSettings::IniFormat);
        auto updaterOfHost = CorvaneModule(Configuration(updater.remoteUrl, QUrl::fromLocalFile(updater.clone),
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
                 QStringList({updater.installed + u"/paper-mint.theme.json"_s,
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
        Updater updater(false);
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
        const Updater updater(reachable);
        QProcess process; // off screen, as this test
        process.start(QStringLiteral(CORVANE_TOOL), {u"show"_s, u"--remote"_s, updater.remoteUrl.toLocalFile(),
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
