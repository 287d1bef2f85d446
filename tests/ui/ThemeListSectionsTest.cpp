// SPDX-License-Identifier: MIT
// The updater list's sections, its summary line and skipped versions: the model with its headers and
// counts, the skips read from a host's settings file as written by hand, and the list off screen.
#include "Corvane/presentation/ListSummary.h"
#include "Corvane/presentation/SkippedVersions.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"

#include <QCheckBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace corvane;
using namespace Qt::StringLiterals;

namespace {

// "Name@2.0" is a new theme, "Name@1.0>2.0" an update; "/light" after the name sets the style.
ThemeEntry entry(const QString& notation)
{
    const QString head = notation.section(u'@', 0, 0), versions = notation.section(u'@', 1);
    ThemeEntry row;
    row.name = head.section(u'/', 0, 0);
    row.styleKey = head.contains(u'/') ? head.section(u'/', 1) : u"dark"_s;
    row.style = row.styleKey;
    row.authors = u"Ann"_s;
    if (versions.contains(u'>'))
        row.installedVersion = versions.section(u'>', 0, 0);
    row.remoteVersion = versions.section(u'>', -1);
    row.copyCommand.sourcePath = u"/clone/Themes/"_s + notation;
    row.copyCommand.destinationPath = u"/installed/"_s + notation;
    return row;
}

QList<ThemeEntry> entries(const QStringList& notations)
{
    QList<ThemeEntry> rows;
    for (const QString& notation : notations)
        rows << entry(notation);
    return rows;
}

// The rows as shown: header titles and theme names.
QStringList layout(const ThemeTableModel& model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        rows << model.index(row).data().toString();
        if (!model.isHeader(row) && model.rowOfEntry(model.entryIndex(row)) != row)
            rows << u"(entry and row disagree)"_s;
    }
    return rows;
}

QStringList names(const QList<ThemeEntry>& rows)
{
    QStringList result;
    for (const ThemeEntry& row : rows)
        result << row.name;
    return result;
}

struct RecordingDelegate final : ThemeListViewControllerDelegate {
    QList<QList<CopyCommand>> installs;
    void installThemes(const QList<CopyCommand>& commands) override { installs << commands; }
    void refreshThemes() override {}
    void openThemeDirectory() override {}
};

} // namespace

class ThemeListSectionsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void headersCountTheRowsShown_data()
    {
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<QString>("find");
        QTest::addColumn<QStringList>("layout");
        const QStringList both{u"Ash@1.0"_s, u"Birch@2.0"_s, u"Cedar@1.0>1.1"_s, u"Dune@1.0>3.0"_s, u"Elm@0.1>0.2"_s};
        QTest::newRow("both sections")
            << both << u""_s
            << QStringList{u"New (2)"_s, u"Ash"_s, u"Birch"_s, u"Updates (3)"_s, u"Cedar"_s, u"Dune"_s, u"Elm"_s};
        QTest::newRow("find leaves one of each")
            << both << u"r"_s << QStringList{u"New (1)"_s, u"Birch"_s, u"Updates (1)"_s, u"Cedar"_s};
        QTest::newRow("find leaves updates only: no empty header")
            << both << u"DUNE"_s << QStringList{u"Updates (1)"_s, u"Dune"_s};
        QTest::newRow("find leaves nothing") << both << u"zz"_s << QStringList{};
        QTest::newRow("a mixed list keeps each section's order")
            << QStringList{u"Pine@1>2"_s, u"Oak@1"_s, u"Fir@1>2"_s, u"Ivy@1"_s} << u""_s
            << QStringList{u"New (2)"_s, u"Oak"_s, u"Ivy"_s, u"Updates (2)"_s, u"Pine"_s, u"Fir"_s};
        QStringList many;
        for (int index = 0; index < 1200; ++index)
            many << u"T%1@1>2"_s.arg(index);
        QTest::newRow("counts in the locale's digits") << many << u""_s << QStringList{u"Updates (1,200)"_s};
    }

    void headersCountTheRowsShown()
    {
        QFETCH(QStringList, rows);
        QFETCH(QString, find);
        QFETCH(QStringList, layout);
        ThemeTableModel model;
        model.setEntries(entries(rows));
        model.setFindText(find);
        QStringList shown = ::layout(model);
        if (layout.size() == 1) // only the header is of interest
            shown = shown.mid(0, 1);
        QCOMPARE(shown, layout);
    }

    void skippedVersionsFromTheHostsSettings_data()
    {
        QTest::addColumn<QString>("settings"); // the group as a host's ini file holds it
        QTest::addColumn<bool>("showSkipped");
        QTest::addColumn<QStringList>("layout");
        QTest::addColumn<QStringList>("updateAll");
        const auto skip = [](const QString& name, const QString& style, const QString& version) {
            return u"[Corvane]\nskippedVersions\\1\\name=%1\nskippedVersions\\1\\style=%2\nskippedVersions\\1\\version=%3\n"
                   u"skippedVersions\\size=1\n"_s.arg(name, style, version);
        };
        QTest::newRow("the version offered is hidden") << skip(u"Dune"_s, u"dark"_s, u"3.0.0"_s) << false
            << QStringList{u"New (1)"_s, u"Ash"_s, u"Updates (1)"_s, u"Elm"_s} << QStringList{u"Ash"_s, u"Elm"_s};
        QTest::newRow("shown on request, still left to the user") << skip(u"Dune"_s, u"dark"_s, u"3"_s) << true
            << QStringList{u"New (1)"_s, u"Ash"_s, u"Updates (2)"_s, u"Dune"_s, u"Elm"_s}
            << QStringList{u"Ash"_s, u"Elm"_s};
        QTest::newRow("a newer version shows again") << skip(u"Dune"_s, u"dark"_s, u"2.9.9"_s) << false
            << QStringList{u"New (1)"_s, u"Ash"_s, u"Updates (2)"_s, u"Dune"_s, u"Elm"_s}
            << QStringList{u"Ash"_s, u"Dune"_s, u"Elm"_s};
        QTest::newRow("an older version stays hidden") << skip(u"Dune"_s, u"dark"_s, u"3.1"_s) << false
            << QStringList{u"New (1)"_s, u"Ash"_s, u"Updates (1)"_s, u"Elm"_s} << QStringList{u"Ash"_s, u"Elm"_s};
        QTest::newRow("the other style is another theme") << skip(u"Dune"_s, u"light"_s, u"3.0.0"_s) << false
            << QStringList{u"New (1)"_s, u"Ash"_s, u"Updates (2)"_s, u"Dune"_s, u"Elm"_s}
            << QStringList{u"Ash"_s, u"Dune"_s, u"Elm"_s};
        QTest::newRow("a new theme skipped: its section goes") << skip(u"Ash"_s, u"dark"_s, u"1.0"_s) << false
            << QStringList{u"Updates (2)"_s, u"Dune"_s, u"Elm"_s} << QStringList{u"Dune"_s, u"Elm"_s};
        QTest::newRow("an unreadable version skips nothing") << skip(u"Dune"_s, u"dark"_s, u"latest"_s) << false
            << QStringList{u"New (1)"_s, u"Ash"_s, u"Updates (2)"_s, u"Dune"_s, u"Elm"_s}
            << QStringList{u"Ash"_s, u"Dune"_s, u"Elm"_s};
    }

    void skippedVersionsFromTheHostsSettings()
    {
        QFETCH(QString, settings);
        QFETCH(bool, showSkipped);
        QTemporaryDir directory;
        QFile file(directory.filePath(u"host.ini"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(settings.toUtf8());
        file.close();
        QSettings host(file.fileName(), QSettings::IniFormat);

        ThemeTableModel model;
        model.setEntries(entries({u"Ash@1.0"_s, u"Dune@1.0>3.0"_s, u"Elm@0.1>0.2"_s}));
        model.setSkippedVersions(SkippedVersions::load(host));
        model.setShowsSkipped(showSkipped);
        QTEST(layout(model), "layout");
        QTEST(names(model.actionableEntries()), "updateAll");
        QCOMPARE(model.waitingCount(), 3 - model.skippedCount());
    }

    void summaryLine_data()
    {
        QTest::addColumn<int>("themes");
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QString>("summary");
        QTest::newRow("one, just now") << 1 << 59 << u"1 theme to install or update · checked just now"_s;
        QTest::newRow("minutes") << 5 << 150 << u"5 themes to install or update · checked 2 minutes ago"_s;
        QTest::newRow("one minute") << 0 << 60 << u"0 themes to install or update · checked 1 minute ago"_s;
        QTest::newRow("hours") << 1200 << 3 * 3600 + 59 * 60
                               << u"1,200 themes to install or update · checked 3 hours ago"_s;
        QTest::newRow("days") << 2 << 49 * 3600 << u"2 themes to install or update · checked 2 days ago"_s;
        QTest::newRow("a clock set back") << 2 << -500 << u"2 themes to install or update · checked just now"_s;
    }

    void summaryLine()
    {
        QFETCH(int, themes);
        QFETCH(int, seconds);
        QTEST(listSummary(themes, std::chrono::seconds(seconds)), "summary");
    }

    // Off screen: Tab steps over the header from one section into the next, a skip is written to the
    // host's settings and leaves Update All, and Show Skipped brings the row back without the button
    // acting on it.
    void theListSkipsAndStepsOverHeaders()
    {
        QTemporaryDir directory;
        QSettings host(directory.filePath(u"host.ini"_s), QSettings::IniFormat);
        ThemeListViewController list;
        auto delegate = std::make_shared<RecordingDelegate>();
        list.setDelegate(delegate);
        list.setSettings(&host);
        list.resize(560, 600);
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        const QList<ThemeEntry> rows = entries({u"Ash@1.0"_s, u"Birch@2.0"_s, u"Dune@1.0>3.0"_s, u"Elm@0.1>0.2"_s});
        list.updateButtons(Result<QList<ThemeEntry>, AnyError>(rows));
        list.tableViewModel().setEntries(rows);
        QVERIFY(list.summaryLabel()->isVisible());
        QCOMPARE(list.summaryLabel()->text(), u"4 themes to install or update · checked just now"_s);
        QVERIFY(!list.showSkippedToggle()->isVisible()); // nothing skipped: nothing to show

        ThemeTableView* table = list.themeTableView();
        QVERIFY(table->focusRow(2, Qt::TabFocusReason)); // Birch, the last new theme
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(table->focusedRow(), 4); // Dune, past "Updates (2)"
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
        QCOMPARE(table->focusedRow(), 2);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
        QCOMPARE(table->focusedRow(), 1); // the first theme, not its header

        list.skipVersion(rows.at(2));
        QCOMPARE(SkippedVersions::load(host).size(), 1);
        QCOMPARE(names(list.tableViewModel().entries()), (QStringList{u"Ash"_s, u"Birch"_s, u"Elm"_s}));
        QCOMPARE(list.summaryLabel()->text(), u"3 themes to install or update · checked just now"_s);
        QVERIFY(list.showSkippedToggle()->isVisible());
        list.showSkippedToggle()->click();
        QCOMPARE(names(list.tableViewModel().entries()), names(rows));
        list.updateAll();
        QCOMPARE(delegate->installs.size(), 1);
        QCOMPARE(delegate->installs.at(0).size(), 3); // Dune stays skipped though shown

        list.unskipVersion(rows.at(2));
        QVERIFY(SkippedVersions::load(host).isEmpty());
        QCOMPARE(list.updateAllButton()->isEnabled(), true);
        list.updateAll();
        QCOMPARE(delegate->installs.at(1).size(), 4);

        // The host forgets the skips: the next list shows every row again.
        list.skipVersion(rows.at(0));
        host.remove(u"Corvane/skippedVersions"_s);
        list.updateButtons(Result<QList<ThemeEntry>, AnyError>(rows));
        list.tableViewModel().setEntries(rows);
        QVERIFY(!list.tableViewModel().isSkipped(rows.at(0)));
        QCOMPARE(list.tableViewModel().actionableEntries().size(), 4);
    }
};

QTEST_MAIN(ThemeListSectionsTest)
#include "ThemeListSectionsTest.moc"
