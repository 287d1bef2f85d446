#include "ThemeFiles.h"
#include "ToolScene.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTest>

using namespace corvane::test;

namespace {

void addTransports()
{
    QTest::addColumn<bool>("overGitProtocol");
    QTest::newRow("file://") << false;
    QTest::newRow("git://") << true;
}

} // namespace

class ListCommandTest : public QObject {
    Q_OBJECT

private slots:
    void listsTheWindowsRows_data() { addTransports(); }
    void listsTheWindowsRows()
    {
        QFETCH(bool, overGitProtocol);
        ToolScene scene(overGitProtocol);
        QVERIFY(scene.isReady());
        scene.publishStandardThemes();

        const ToolRun run = runCorvane(QStringList{"list"} + scene.locations());
        QCOMPARE(run.err, QString());
        QCOMPARE(run.exitCode, 0);
        // New themes first, then updates, each group by name; an update shows the installed name as written.
        QCOMPARE(run.outLines(), (QStringList{"Aurora\tLight\tAnn, Bo\t-\t1.0.0",
                                              decomposedCafe() + "\tLight\tDee\t2.0.0\t3.0.0",
                                              "Solar\tDark\tCy\t1.5.0\t2.0.0"}));
    }

    void listsAsJson_data() { addTransports(); }
    void listsAsJson()
    {
        QFETCH(bool, overGitProtocol);
        ToolScene scene(overGitProtocol);
        QVERIFY(scene.isReady());
        scene.publishStandardThemes();

        const ToolRun run = runCorvane(QStringList{"list"} + scene.locations() + QStringList{"--json"});
        QCOMPARE(run.exitCode, 0);
        QJsonParseError parsing;
        const QJsonDocument document = QJsonDocument::fromJson(run.out.toUtf8(), &parsing);
        QCOMPARE(parsing.error, QJsonParseError::NoError);
        QVERIFY(document.isArray());
        const QJsonArray rows = document.array();
        QCOMPARE(rows.size(), 3);

        const QString clone = QDir(scene.clonePath()).filePath("Themes/");
        const QString installed = scene.installedPath() + '/';
        const QJsonObject aurora{{"name", "Aurora"}, {"style", "Light"}, {"authors", "Ann, Bo"},
                                 {"installedVersion", QJsonValue::Null}, {"remoteVersion", "1.0.0"},
                                 {"source", clone + "aurora.theme.json"},
                                 {"destination", installed + "aurora.theme.json"}};
        const QJsonObject cafe{{"name", decomposedCafe()}, {"style", "Light"}, {"authors", "Dee"},
                               {"installedVersion", "2.0.0"}, {"remoteVersion", "3.0.0"},
                               {"source", clone + "cafe.theme.json"}, {"destination", installed + "cafe-old.theme.json"}};
        const QJsonObject solar{{"name", "Solar"}, {"style", "Dark"}, {"authors", "Cy"},
                                {"installedVersion", "1.5.0"}, {"remoteVersion", "2.0.0"},
                                {"source", clone + "solar-dark.theme.json"},
                                {"destination", installed + "my-solar.theme.json"}};
        QCOMPARE(rows[0].toObject(), aurora);
        QCOMPARE(rows[1].toObject(), cafe);
        QCOMPARE(rows[2].toObject(), solar);
        // Keys come in the row's order, the way a person reads them.
        QVERIFY(run.out.indexOf("\"name\"") < run.out.indexOf("\"style\""));
        QVERIFY(run.out.indexOf("\"remoteVersion\"") < run.out.indexOf("\"destination\""));
    }

    void namesThatWouldBreakARow_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("plainName");
        QTest::newRow("tab") << "Solar\tFlare" << "Solar Flare";
        QTest::newRow("line break") << "Solar\nFlare" << "Solar Flare";
        QTest::newRow("quotes and backslash") << "\"Solar\" \\ Flare" << "\"Solar\" \\ Flare";
        QTest::newRow("other control character") << "Solar\x01Flare" << "Solar\x01Flare";
    }

    void namesThatWouldBreakARow()
    {
        QFETCH(QString, name);
        QFETCH(QString, plainName);
        ToolScene scene(false);
        writeTheme(scene.remote().themesDirectory(), "odd.theme.json", name, "dark", {"Ann\tBo"}, "1.0.0");
        scene.remote().commitAll("Odd name");

        // Plain: one line, five fields.
        const ToolRun plain = runCorvane(QStringList{"list"} + scene.locations());
        QCOMPARE(plain.exitCode, 0);
        QCOMPARE(plain.outLines(), QStringList{plainName + "\tDark\tAnn Bo\t-\t1.0.0"});
        // JSON keeps the text exactly.
        const ToolRun json = runCorvane(QStringList{"list"} + scene.locations() + QStringList{"--json"});
        QCOMPARE(json.exitCode, 0);
        const QJsonArray rows = QJsonDocument::fromJson(json.out.toUtf8()).array();
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows[0]["name"].toString(), name);
        QCOMPARE(rows[0]["authors"].toString(), QString("Ann\tBo"));
    }

    void nothingToOffer_data()
    {
        QTest::addColumn<bool>("json");
        QTest::addColumn<QString>("expected");
        QTest::newRow("plain") << false << "";
        QTest::newRow("json") << true << "[]\n";
    }

    void nothingToOffer()
    {
        QFETCH(bool, json);
        QFETCH(QString, expected);
        ToolScene scene(false);
        writeTheme(scene.remote().themesDirectory(), "lunar.theme.json", "Lunar", "dark", {}, "1.0.0");
        scene.remote().commitAll("One theme");
        writeTheme(scene.installedPath(), "lunar.theme.json", "Lunar", "dark", {}, "1.1.0"); // newer: no downgrade

        const ToolRun run = runCorvane(QStringList{"list"} + scene.locations() + (json ? QStringList{"--json"} : QStringList{}));
        QCOMPARE(run.err, QString());
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, expected);
    }

    void failuresShowTheAlertsText_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("expectedStart");
        QTest::addColumn<QString>("expectedMention");

        QTest::newRow("broken remote theme file")
            << "broken remote"
            << "Computing theme differences failed: Remote theme fetching error: Theme decoding failed: "
            << "broken.theme.json";
        QTest::newRow("remote not reachable")
            << "unreachable"
            << "Computing theme differences failed: Remote theme fetching error: Repository error: " << "127.0.0.1";
        QTest::newRow("a file where the installed themes belong")
            << "installed is a file"
            << "Computing theme differences failed: Local theme fetching error: File error: " << "";
        QTest::newRow("broken installed theme file")
            << "broken installed"
            << "Computing theme differences failed: Local theme fetching error: Theme decoding failed: "
            << "mine.theme.json";
    }

    void failuresShowTheAlertsText()
    {
        QFETCH(QString, fault);
        QFETCH(QString, expectedStart);
        QFETCH(QString, expectedMention);

        ToolScene scene(false);
        writeTheme(scene.remote().themesDirectory(), "lunar.theme.json", "Lunar", "dark", {}, "1.0.0");
        if (fault == "broken remote")
            writeFile(scene.remote().themesDirectory(), "broken.theme.json", R"({"name": "Broken", "style": "dark"})");
        scene.remote().commitAll("Themes");
        QStringList locations = scene.locations();
        if (fault == "unreachable") {
            QTcpServer probe; // a port nobody listens on once the probe is gone
            QVERIFY(probe.listen(QHostAddress::LocalHost));
            locations[1] = QString("git://127.0.0.1:%1/remote").arg(probe.serverPort());
            probe.close();
        } else if (fault == "installed is a file") {
            writeFile(scene.path(""), "installed", "not a directory");
        } else if (fault == "broken installed") {
            writeFile(scene.installedPath(), "mine.theme.json", "{ not json");
        }

        for (const QStringList& extra : {QStringList{}, QStringList{"--json"}}) {
            const ToolRun run = runCorvane(QStringList{"list"} + locations + extra);
            QCOMPARE(run.exitCode, 1);
            QCOMPARE(run.out, QString());
            QVERIFY2(run.err.startsWith(expectedStart), qPrintable(run.err));
            QVERIFY2(run.err.contains(expectedMention), qPrintable(run.err));
            QCOMPARE(run.err.count('\n'), 1); // one message, one line
        }
    }

    void badUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("no installed directory") << QStringList{"list", "--remote", "r", "--clone", "c"};
        QTest::newRow("stray argument") << QStringList{"list", "--remote", "r", "--clone", "c", "--installed", "i", "x"};
    }

    void badUsage()
    {
        QFETCH(QStringList, arguments);
        const ToolRun run = runCorvane(arguments);
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.out, QString());
        QVERIFY2(run.err.startsWith("usage: corvane list "), qPrintable(run.err));
    }
};

QTEST_GUILESS_MAIN(ListCommandTest)
#include "ListCommandTest.moc"
