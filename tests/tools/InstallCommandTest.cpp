#include "ThemeFiles.h"
#include "ToolScene.h"
#include "TrashSandbox.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace corvane::test;

namespace {

QStringList installedFiles(const ToolScene& scene)
{
    return QDir(scene.installedPath()).entryList(QDir::Files | QDir::Hidden | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

class InstallCommandTest : public QObject {
    Q_OBJECT

private slots:
    void installsChosenRows_data()
    {
        QTest::addColumn<bool>("overGitProtocol");
        QTest::addColumn<QStringList>("choice");
        QTest::addColumn<int>("expectedExit");
        QTest::addColumn<QStringList>("expectedOut");
        QTest::addColumn<QString>("expectedErr");
        QTest::addColumn<QStringList>("expectedTrash");
        QTest::addColumn<QStringList>("expectedLeft"); // what list shows afterwards

        const QString updatedCafe = "updated " + decomposedCafe() + " 2.0.0 -> 3.0.0";
        for (const bool git : {false, true}) {
            const char* transport = git ? "git://" : "file://";
            QTest::addRow("%s: one update by name", transport)
                << git << QStringList{"Solar"} << 0 << QStringList{"updated Solar 1.5.0 -> 2.0.0"} << ""
                << QStringList{"my-solar.theme.json"} << QStringList{"Aurora", decomposedCafe()};
            QTest::addRow("%s: everything", transport)
                << git << QStringList{"--all"} << 0
                << QStringList{"installed Aurora", updatedCafe, "updated Solar 1.5.0 -> 2.0.0"} << ""
                << QStringList{"cafe-old.theme.json", "my-solar.theme.json"} << QStringList{};
        }
        QTest::newRow("names in any order install in row order")
            << false << QStringList{"Solar", "Aurora"} << 0
            << QStringList{"installed Aurora", "updated Solar 1.5.0 -> 2.0.0"} << ""
            << QStringList{"my-solar.theme.json"} << QStringList{decomposedCafe()};
        QTest::newRow("a name composed differently still matches")
            << false << QStringList{composedCafe()} << 0 << QStringList{updatedCafe} << ""
            << QStringList{"cafe-old.theme.json"} << QStringList{"Aurora", "Solar"};
        QTest::newRow("names are case-sensitive")
            << false << QStringList{"solar"} << 1 << QStringList{}
            << "corvane install: no new or updated theme is named 'solar'\n" << QStringList{}
            << QStringList{"Aurora", decomposedCafe(), "Solar"};
        QTest::newRow("unmatched names are reported, the others installed")
            << false << QStringList{"Nimbus", "Aurora", "Lunar", "Nimbus"} << 1 << QStringList{"installed Aurora"}
            << "corvane install: no new or updated theme is named 'Nimbus'\n"
               "corvane install: no new or updated theme is named 'Lunar'\n"
            << QStringList{} << QStringList{decomposedCafe(), "Solar"};
    }

    void installsChosenRows()
    {
        QFETCH(bool, overGitProtocol);
        QFETCH(QStringList, choice);
        QFETCH(int, expectedExit);
        QFETCH(QStringList, expectedOut);
        QFETCH(QString, expectedErr);
        QFETCH(QStringList, expectedTrash);
        QFETCH(QStringList, expectedLeft);

        TrashSandbox trash; // the child inherits XDG_DATA_HOME
        ToolScene scene(overGitProtocol);
        QVERIFY(scene.isReady());
        scene.publishStandardThemes();

        const ToolRun run = runCorvane(QStringList{"install"} + scene.locations() + choice);
        QCOMPARE(run.err, expectedErr);
        QCOMPARE(run.outLines(), expectedOut);
        QCOMPARE(run.exitCode, expectedExit);
        QCOMPARE(trash.trashedNames(), expectedTrash);

        // An update lands where the installed file lay, with the repository's content.
        if (expectedOut.contains("updated Solar 1.5.0 -> 2.0.0")) {
            QCOMPARE(readFile(scene.installedPath() + "/my-solar.theme.json"),
                     readFile(scene.clonePath() + "/Themes/solar-dark.theme.json"));
            QVERIFY(readFile(trash.filesDirectory() + "/my-solar.theme.json").contains("\"1.5\""));
        }
        // A new theme is named after its repository file.
        QCOMPARE(QFileInfo::exists(scene.installedPath() + "/aurora.theme.json"),
                 expectedOut.contains("installed Aurora"));
        // No temporary file is left behind.
        for (const QString& file : installedFiles(scene))
            QVERIFY2(file.endsWith(".theme.json"), qPrintable(file));

        const ToolRun list = runCorvane(QStringList{"list"} + scene.locations());
        QCOMPARE(list.exitCode, 0);
        QStringList left;
        for (const QString& line : list.outLines())
            left.append(line.section('\t', 0, 0));
        QCOMPARE(left, expectedLeft);
    }

    void aFailedCopyStopsTheBatch()
    {
        TrashSandbox trash;
        ToolScene scene(false);
        for (const QString name : {"Aurora", "Borealis", "Cirrus"})
            writeTheme(scene.remote().themesDirectory(), name.toLower() + ".theme.json", name, "dark", {}, "1.0.0");
        scene.remote().commitAll("Three themes");
        // A folder of the user's where Borealis would go: never replaced.
        QVERIFY(QDir().mkpath(scene.installedPath() + "/borealis.theme.json"));

        const ToolRun run = runCorvane(QStringList{"install"} + scene.locations() + QStringList{"--all"});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.outLines(), QStringList{"installed Aurora"});
        const QStringList err = run.err.split('\n', Qt::SkipEmptyParts);
        QCOMPARE(err.size(), 2);
        QCOMPARE(err[0], QString("The theme 'borealis.theme.json' could not be copied. You can try to delete all local "
                                 "themes to start fresh."));
        QVERIFY2(err[1].contains("borealis.theme.json"), qPrintable(err[1]));
        QVERIFY(QFileInfo(scene.installedPath() + "/borealis.theme.json").isDir());
        QVERIFY(!QFileInfo::exists(scene.installedPath() + "/cirrus.theme.json"));
        QCOMPARE(trash.trashedNames(), QStringList{});
        QCOMPARE(installedFiles(scene), (QStringList{"aurora.theme.json", "borealis.theme.json"}));
    }

    void badUsage_data()
    {
        QTest::addColumn<QStringList>("choice");
        QTest::newRow("nothing chosen") << QStringList{};
        QTest::newRow("--all and a name") << QStringList{"--all", "Aurora"};
    }

    void badUsage()
    {
        QFETCH(QStringList, choice);
        ToolScene scene(false);
        const ToolRun run = runCorvane(QStringList{"install"} + scene.locations() + choice);
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.out, QString());
        QVERIFY2(run.err.startsWith("usage: corvane install "), qPrintable(run.err));
        QVERIFY(!QFileInfo::exists(scene.clonePath())); // nothing was fetched
    }
};

QTEST_GUILESS_MAIN(InstallCommandTest)
#include "InstallCommandTest.moc"
