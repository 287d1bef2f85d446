// SPDX-License-Identifier: MIT
#include "Corvane/corvane_version.h"

#include "GitDaemon.h"
#include "GitRepositoryFixture.h"
#include "SmartHttpServer.h"
#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace corvane::test;

namespace {

const QString composedCafe = QString::fromUtf8("Caf\u00e9"), decomposedCafe = QString::fromUtf8("Cafe\u0301");
const QString updatedSolar = "updated Solar 1.5.0 -> 2.0.0", updatedCafe = "updated " + decomposedCafe + " 2.0.0 -> 3.0.0";

struct Run { int exitCode = -1; QString out, err; QStringList lines() const { return out.split('\n', Qt::SkipEmptyParts); } };

// The built tool with exactly these arguments, in this process's environment changed by the given one.
Run runTool(const QStringList& arguments, const QProcessEnvironment& changes = {})
{
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : changes.keys())
        environment.insert(name, changes.value(name));
    tool.setProcessEnvironment(environment);
    tool.start(CORVANE_TOOL_PATH, arguments);
    const bool finished = tool.waitForFinished(120000) && tool.exitStatus() == QProcess::NormalExit;
    return {finished ? tool.exitCode() : -1, tool.readAllStandardOutput(), tool.readAllStandardError()};
}

// A theme repository reached over file:// or through a real git daemon, the tool's clone and the installed themes.
struct Scene {
    QTemporaryDir dir;
    GitRepositoryFixture remote{dir.filePath("remote")};
    std::unique_ptr<GitDaemon> daemon;
    const QString clone = dir.filePath("clone"), installed = dir.filePath("installed");

    explicit Scene(bool overGit = false) : daemon(overGit ? std::make_unique<GitDaemon>(dir.path()) : nullptr) {}

    // A command on this scene's remote, clone and installed themes.
    Run run(const QStringList& arguments) const
    {
        const QString url = daemon ? daemon->url("remote").toString() : remote.fileUrl().toString();
        return runTool(QStringList{arguments[0], "--remote", url, "--clone", clone, "--installed", installed} + arguments.mid(1));
    }

    // New: Aurora. Updates: Café (installed decomposed, as cafe-old) and Solar (1.5, as my-solar).
    void publish()
    {
        writeTheme(remote.themesDirectory(), "aurora.theme.json", "Aurora", "light", {"Ann", "Bo"}, "1.0.0");
        writeTheme(remote.themesDirectory(), "cafe.theme.json", composedCafe, "Light", {"Dee"}, "3.0.0");
        writeTheme(remote.themesDirectory(), "solar-dark.theme.json", "Solar", "dark", {"Cy"}, "2.0.0");
        remote.commitAll("Publish the themes");
        writeTheme(installed, "cafe-old.theme.json", decomposedCafe, "light", {"Dee"}, "2.0.0");
        writeTheme(installed, "my-solar.theme.json", "Solar", "dark", {"Cy"}, "1.5");
    }
};

// Every file of a directory (not its folders) with its bytes.
QMap<QString, QByteArray> filesIn(const QString& directory)
{
    QMap<QString, QByteArray> files;
    for (const QString& name : QDir(directory).entryList(QDir::Files | QDir::Hidden))
        files.insert(name, readFile(directory + '/' + name));
    return files;
}

QString inInstalled(const QString& name)
{
    return "INSTALLED/" + name;
}

} // namespace

class CorvaneToolTest : public QObject {
    Q_OBJECT

private slots:
    void listsTheWindowsRows()
    {
        Scene scene;
        // Names that would split a row, or that a terminal would act on (clear the screen, ring).
        const QString odd = QString("Z\tnew\nline \"q\" \\ \x01\x1b[2J\x07") + QChar(0x85);
        writeTheme(scene.remote.themesDirectory(), "z.theme.json", odd, "dark", {"Ann\tBo"}, "1.0.0");
        scene.publish();

        // New themes, then updates, each by name; an update shows the installed name as written.
        const Run plain = scene.run({"list"});
        QCOMPARE(plain.err, QString());
        QCOMPARE(plain.exitCode, 0);
        QCOMPARE(plain.lines(), (QStringList{"Aurora\tLight\tAnn, Bo\t-\t1.0.0",
                                             "Z\\tnew\\nline \"q\" \\\\ \\x01\\x1b[2J\\x07\\u0085\tDark\tAnn\\tBo\t-\t1.0.0",
                                             decomposedCafe + "\tLight\tDee\t2.0.0\t3.0.0", "Solar\tDark\tCy\t1.5.0\t2.0.0"}));

        const Run json = scene.run({"list", "--json"});
        QCOMPARE(json.exitCode, 0);
        const auto row = [&](QString name, QString style, QStringList authors, QJsonValue installed, QString remote,
                             QString source, QString destination) {
            return QJsonObject{{"name", name}, {"style", style.toLower()}, {"styleLabel", style},
                               {"authors", QJsonArray::fromStringList(authors)}, {"installedVersion", installed},
                               {"remoteVersion", remote}, {"source", scene.clone + "/Themes/" + source + ".theme.json"},
                               {"destination", scene.installed + '/' + destination + ".theme.json"}};
        };
        const QJsonArray rows = QJsonDocument::fromJson(json.out.toUtf8()).array();
        QCOMPARE(rows, (QJsonArray{row("Aurora", "Light", {"Ann", "Bo"}, {}, "1.0.0", "aurora", "aurora"),
                                   row(odd, "Dark", {"Ann\tBo"}, {}, "1.0.0", "z", "z"),
                                   row(decomposedCafe, "Light", {"Dee"}, "2.0.0", "3.0.0", "cafe", "cafe-old"),
                                   row("Solar", "Dark", {"Cy"}, "1.5.0", "2.0.0", "solar-dark", "my-solar")}));


        TrashSandbox trash;
        const Run install = scene.run({"install", "--all"});
        QCOMPARE(install.exitCode, 0);
        QVERIFY(install.lines().contains("installed Z\\tnew\\nline \"q\" \\\\ \\x01\\x1b[2J\\x07\\u0085"));
    }

    // lint: every file in byte order, each theme or its fault. ROOT: a directory of the test's own; an
    // output starting with "[" is compared as JSON.
    void lintsADirectory_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err");

        const QString failed = "Theme decoding failed: Could not decode JSON, ";
        const QString grey = failed + "decoding JSON from 'ROOT/mixed/c.theme.json' failed: Invalid style: grey";
        const QString pipe = failed + "reading Data from 'ROOT/mixed/pipe.theme.json' failed: "
                                      "It is not a regular file but a FIFO (named pipe).";
        QTest::newRow("every file in byte order") << QStringList{"ROOT/mixed"} << 1
            << "A.theme.json\tAlpha\tlight\tMara, Tom\t2.1.0\nb.theme.json\tBeta\tdark\tX\t1.2.0\n"
               "c.theme.json\terror\t" + grey + "\npipe.theme.json\terror\t" + pipe + "\n"
               "tab\\tname.theme.json\tNew\\nLine\tdark\ta\\tb\t3.0.0\n\u00e9t\u00e9.theme.json\t\u00c9t\u00e9\tlight\t\t1.0.0\n"
            << "";
        QTest::newRow("JSON") << QStringList{"ROOT/mixed", "--json"} << 1
            << QString(R"([{"file": "A.theme.json", "name": "Alpha", "style": "light", "styleLabel": "Light", "authors": ["Mara", "Tom"], "version": "2.1.0"},
                  {"file": "b.theme.json", "name": "Beta", "style": "dark", "styleLabel": "Dark", "authors": ["X"], "version": "1.2.0"},
                  {"file": "c.theme.json", "error": "GREY"}, {"file": "pipe.theme.json", "error": "PIPE"},
                  {"file": "tab\tname.theme.json", "name": "New\nLine", "style": "dark", "styleLabel": "Dark", "authors": ["a\tb"], "version": "3.0.0"},
                  {"file": "\u00e9t\u00e9.theme.json", "name": "\u00c9t\u00e9", "style": "light", "styleLabel": "Light", "authors": [], "version": "1.0.0"}])")
                   .replace("GREY", grey).replace("PIPE", pipe)
            << "";
        QTest::newRow("empty, as JSON") << QStringList{"ROOT/empty", "--json"} << 0 << "[]\n" << "";
        QTest::newRow("missing directory") << QStringList{"ROOT/missing", "--json"} << 1 << ""
            << "Theme decoding failed: File at file://ROOT/missing appears not to be a directory.\n";
        QTest::newRow("no directory") << QStringList{} << 2 << ""
            << "usage: corvane lint DIR [--json]\ncorvane lint: DIR is required\n";
    }

    void lintsADirectory()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QTemporaryDir root;
        const QString mixed = root.filePath("mixed");
        writeTheme(mixed, "b.theme.json", "Beta", "Dark", {"X"}, "1.2");
        writeTheme(mixed, "A.theme.json", "Alpha", "light", {"Mara", "Tom"}, "2.1.0");
        writeTheme(mixed, "c.theme.json", "Grey", "grey", {}, "1");
        writeTheme(mixed, "tab\tname.theme.json", "New\nLine", "dark", {"a\tb"}, "3");
        writeTheme(mixed, "\u00e9t\u00e9.theme.json", "\u00c9t\u00e9", "light", {}, "1");
        QCOMPARE(::mkfifo(QFile::encodeName(mixed + "/pipe.theme.json").constData(), 0644), 0);
        QVERIFY(QDir().mkpath(root.filePath("empty")));

        const Run run = runTool(QStringList{"lint"} + arguments.replaceInStrings("ROOT", root.path()));
        QCOMPARE(run.exitCode, exitCode);
        QCOMPARE(run.err, err.replace("ROOT", root.path()));
        out.replace("ROOT", root.path());
        if (out.startsWith(u'[')) {
            QVERIFY(QJsonDocument::fromJson(out.toUtf8()).isArray());
            QCOMPARE(QJsonDocument::fromJson(run.out.toUtf8()), QJsonDocument::fromJson(out.toUtf8()));
        } else {
            QCOMPARE(run.out, out);
        }
    }

    // Names that are not UTF-8 keep their bytes from the clone to the installed directory; an
    // installed one is updated in place, not beside a look-alike. Every output keeps them
    // recoverable: \xHH in lines, an unpaired surrogate escape in JSON.
    void handlesNamesThatAreNotUTF8()
    {
        TrashSandbox trash;
        Scene scene;
        writeTheme(scene.remote.themesDirectory(), "aurora.theme.json", "Aurora", "light", {}, "1.0.0");
        writeFileNamed(scene.remote.themesDirectory(), "bad\xff\xfename.theme.json", themeJson("Bad", "dark", {}, "1.0.0"));
        writeFileNamed(scene.remote.themesDirectory(), "old-remote.theme.json", themeJson("Old", "dark", {}, "2.0.0"));
        scene.remote.commitAll("Odd names");
        writeFileNamed(scene.installed, "old\xff.theme.json", themeJson("Old", "dark", {}, "1.0.0"));

        const Run list = scene.run({"list", "--json"});
        QVERIFY2(list.out.contains("/Themes/bad\\udcff\\udcfename.theme.json\""), qPrintable(list.out));
        QVERIFY2(list.out.contains("/old\\udcff.theme.json\"}"), qPrintable(list.out));
        QCOMPARE(runTool({"lint", scene.installed}).out, "old\\xff.theme.json\tOld\tdark\t\t1.0.0\n");

        const Run run = scene.run({"install", "--all"});
        QCOMPARE(run.err, QString());
        QCOMPARE(run.lines(), (QStringList{"installed Aurora", "installed Bad", "updated Old 1.0.0 -> 2.0.0"}));
        // The batch's record lies in a folder of its own, which the theme reader passes over.
        QCOMPARE(encodedNames(scene.installed), (QList<QByteArray>{".corvane-undo", "aurora.theme.json",
                                                                   "bad\xff\xfename.theme.json", "old\xff.theme.json"}));
        QCOMPARE(encodedNames(trash.filesDirectory()), QList<QByteArray>{"old\xff.theme.json"});
        QCOMPARE(scene.run({"list"}).out, QString());

        // Undo finds the replaced file under its very bytes.
        QCOMPARE(runTool({"undo", "--installed", scene.installed}).exitCode, 0);
        QCOMPARE(encodedNames(scene.installed), (QList<QByteArray>{".corvane-undo", "old\xff.theme.json"}));
    }

    void reportsABrokenRemoteThemeFile()
    {
        Scene scene;
        writeFile(scene.remote.themesDirectory(), "broken.theme.json", R"({"name": "Broken", "style": "dark"})");
        scene.remote.commitAll("A broken theme");
        for (const char* command : {"list", "install --all"}) {
            const Run run = scene.run(QString(command).split(' '));
            QCOMPARE(run.exitCode, 1);
            QCOMPARE(run.out, QString());
            QCOMPARE(run.err, "Computing theme differences failed: Remote theme fetching error: Theme decoding failed: "
                              "Could not decode JSON, decoding JSON from '" + scene.clone
                                  + "/Themes/broken.theme.json' failed: No value associated with key \"author\".\n");
        }
    }

    void installsChosenRows_data()
    {
        QTest::addColumn<QStringList>("choice");
        QTest::addColumn<QStringList>("out");
        QTest::addColumn<QString>("err");
        QTest::addColumn<QStringList>("trashed");
        const QStringList bothOld{"cafe-old.theme.json", "my-solar.theme.json"};
        QTest::newRow("one update by name")
            << QStringList{"Solar"} << QStringList{updatedSolar} << "" << QStringList{"my-solar.theme.json"};
        QTest::newRow("everything")
            << QStringList{"--all"} << QStringList{"installed Aurora", updatedCafe, updatedSolar} << "" << bothOld;
        QTest::newRow("names in any order and composition, installed in row order")
            << QStringList{"Solar", composedCafe} << QStringList{updatedCafe, updatedSolar} << "" << bothOld;
        QTest::newRow("miscased or unknown names reported once, the others installed")
            << QStringList{"solar", "Nimbus", "Aurora", "Nimbus"} << QStringList{"installed Aurora"}
            << "corvane install: no new or updated theme is named 'solar'\ncorvane install: no new or updated theme is "
               "named 'Nimbus'\n" << QStringList{};
    }

    void installsChosenRows()
    {
        QFETCH(QStringList, choice);
        QFETCH(QStringList, out);
        QFETCH(QString, err);
        QFETCH(QStringList, trashed);
        TrashSandbox trash;
        Scene scene;
        scene.publish();

        const Run run = scene.run(QStringList{"install"} + choice);
        QCOMPARE(run.err, err);
        QCOMPARE(run.lines(), out);
        QCOMPARE(run.exitCode, err.isEmpty() ? 0 : 1);
        QCOMPARE(trash.trashedNames(), trashed);
        QCOMPARE(QFileInfo::exists(scene.installed + "/aurora.theme.json"), out.contains("installed Aurora"));
        if (out.contains(updatedSolar)) { // the update lands where the installed file lay, the old one in the Trash
            QCOMPARE(readFile(scene.installed + "/my-solar.theme.json"),
                     readFile(scene.clone + "/Themes/solar-dark.theme.json"));
            QVERIFY(readFile(trash.filesDirectory() + "/my-solar.theme.json").contains("\"1.5\""));
        }
    }

    // A host's settings file names the versions its window skipped; list and install --all leave them out.
    void leavesOutTheVersionsAHostSkipped_data()
    {
        QTest::addColumn<QStringList>("arguments"); // SETTINGS stands for the host's file
        QTest::addColumn<QStringList>("out");      // list: the names only
        QTest::addColumn<QString>("err");
        const QStringList all{"Aurora", decomposedCafe, "Solar"};
        QTest::newRow("list") << QStringList{"list", "--settings", "SETTINGS"} << QStringList{"Aurora", decomposedCafe}
                              << "";
        QTest::newRow("list --include-skipped")
            << QStringList{"list", "--settings", "SETTINGS", "--include-skipped"} << all << "";
        QTest::newRow("install --all") << QStringList{"install", "--all", "--settings", "SETTINGS"}
                                       << QStringList{"installed Aurora", updatedCafe} << "";
        QTest::newRow("install by name, skipped or not")
            << QStringList{"install", "Solar", "--settings", "SETTINGS"} << QStringList{updatedSolar} << "";
        QTest::newRow("a settings file that is not there")
            << QStringList{"list", "--settings", "nowhere.ini"} << QStringList{}
            << "corvane list: no settings file 'nowhere.ini'\n";
    }

    void leavesOutTheVersionsAHostSkipped()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, err);
        TrashSandbox trash;
        Scene scene;
        scene.publish();
        const QString settings = writeFile(scene.dir.path(), "host.ini",
                                           "[Corvane]\nskippedVersions\\1\\name=Solar\nskippedVersions\\1\\style=dark\n"
                                           "skippedVersions\\1\\version=2.0.0\nskippedVersions\\size=1\n");
        arguments.replaceInStrings("SETTINGS", settings);

        const Run run = scene.run(arguments);
        QCOMPARE(run.err, err);
        QCOMPARE(run.exitCode, err.isEmpty() ? 0 : 1);
        QStringList out = run.lines();
        if (arguments.first() == "list")
            out = out.replaceInStrings(QRegularExpression("\t.*"), "");
        QTEST(out, "out");
    }

    // The last batch of `corvane install` comes back out; a second undo or an edited file is refused.
    void undoesTheLastInstall_data()
    {
        QTest::addColumn<bool>("editAurora");
        QTest::addColumn<QStringList>("out");
        QTest::addColumn<QString>("err");
        QTest::newRow("every file back as it was")
            << false
            << QStringList{"trashed " + inInstalled("my-solar.theme.json"), "restored " + inInstalled("my-solar.theme.json"),
                           "trashed " + inInstalled("cafe-old.theme.json"), "restored " + inInstalled("cafe-old.theme.json"),
                           "trashed " + inInstalled("aurora.theme.json")}
            << "";
        QTest::newRow("a theme edited since: refused, nothing changed")
            << true << QStringList{}
            << "'INSTALLED/aurora.theme.json' has changed since it was installed, so the install cannot be undone. "
               "Nothing was changed.\n";
    }

    void undoesTheLastInstall()
    {
        QFETCH(bool, editAurora);
        QFETCH(QStringList, out);
        QFETCH(QString, err);
        TrashSandbox trash;
        Scene scene;
        scene.publish();
        const QByteArray cafe = readFile(scene.installed + "/cafe-old.theme.json");
        QCOMPARE(scene.run({"install", "--all"}).exitCode, 0);
        if (editAurora)
            writeFile(scene.installed, "aurora.theme.json", "{}");
        const QMap<QString, QByteArray> before = filesIn(scene.installed);

        const Run run = runTool({"undo", "--installed", scene.installed});
        QCOMPARE(run.err, QString(err).replace("INSTALLED", scene.installed));
        QCOMPARE(run.lines(), out.replaceInStrings("INSTALLED", scene.installed));
        QCOMPARE(run.exitCode, err.isEmpty() ? 0 : 1);
        if (editAurora) {
            QCOMPARE(filesIn(scene.installed), before);
            return;
        }
        QCOMPARE(QDir(scene.installed).entryList(QDir::Files), (QStringList{"cafe-old.theme.json", "my-solar.theme.json"}));
        QCOMPARE(readFile(scene.installed + "/cafe-old.theme.json"), cafe);
        const Run again = runTool({"undo", "--installed", scene.installed});
        QCOMPARE(again.exitCode, 1);
        QCOMPARE(again.err, "There is no install to undo in '" + scene.installed + "'.\n");
    }

    // What a command-line user expects of any tool.
    void followsCommandLineConventions_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out"); // the start of stdout
        QTest::addColumn<QString>("err"); // the start of stderr
        QTest::newRow("--version") << QStringList{"--version"} << 0 << "corvane " CORVANE_VERSION "\n" << "";
        QTest::newRow("--help") << QStringList{"--help"} << 0 << "usage: corvane <command>" << "";
        QTest::newRow("no command") << QStringList{} << 2 << "" << "usage: corvane <command>";
        for (const char* command : {"check", "list", "install", "lint", "show"})
            QTest::addRow("%s --help", command) << QStringList{command, "--help"} << 0 << "usage: corvane " + QString(command) << "";
        QTest::newRow("check without a clone") << QStringList{"check", "--remote", "/nowhere"} << 2 << ""
                                               << "usage: corvane check";
        QTest::newRow("show without a display or --screenshot")
            << QStringList{"show", "--remote", "/nowhere", "--clone", "/nowhere", "--installed", "/nowhere"} << 1 << ""
            << "corvane show: no display to open the window on";
    }

    void followsCommandLineConventions()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QProcessEnvironment offscreen;
        offscreen.insert("QT_QPA_PLATFORM", "offscreen");
        QTemporaryDir runtime; // Qt's platform notes about a missing one would fill stderr
        QFile::setPermissions(runtime.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        offscreen.insert("XDG_RUNTIME_DIR", runtime.path());
        const Run run = runTool(arguments, offscreen);
        QCOMPARE(run.exitCode, exitCode);
        QVERIFY2(out.isEmpty() ? run.out.isEmpty() : run.out.startsWith(out), qPrintable(run.out));
        QVERIFY2(err.isEmpty() ? run.err.isEmpty() : run.err.startsWith(err), qPrintable(run.err));
        QVERIFY(!run.out.contains("--help-all"));
    }

    // user@host:path is ssh, as git takes it; a slash before the colon makes it a local path.
    void takesScpLikeRemotesAsSsh_data()
    {
        QTest::addColumn<QString>("remote");
        QTest::addColumn<QString>("err"); // part of the failure's text
        QTest::newRow("user@host:path") << "nobody@127.0.0.1:themes.git" << "127.0.0.1";
        QTest::newRow("host:path") << "127.0.0.1:themes.git" << "127.0.0.1";
        QTest::newRow("local path with a colon") << "./not:remote" << "/not:remote";
    }

    void takesScpLikeRemotesAsSsh()
    {
        QFETCH(QString, remote);
        QFETCH(QString, err);
        QTemporaryDir dir;
        const Run run = runTool({"check", "--remote", remote, "--clone", dir.filePath("clone")});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.contains(err), qPrintable(run.err));
        QVERIFY2(remote.startsWith("./") || !run.err.contains(QDir::currentPath()), qPrintable(run.err));
    }

    // Scripts name no secrets: the password comes from git's credential helpers, and stays out of the clone;
    // an accepted answer is approved (the helper may keep it), a refused one rejected, as git does.
    void asksGitsCredentialHelpers_data()
    {
        QTest::addColumn<QString>("stored"); // what the helper knows; empty: no helper configured
        QTest::addColumn<int>("exitCode");
        QTest::newRow("the helper knows the password") << "ada:s3cret" << 0;
        QTest::newRow("the helper knows a wrong one") << "ada:wrong" << 1;
        QTest::newRow("no helper") << "" << 1;
    }

    void asksGitsCredentialHelpers()
    {
        QFETCH(QString, stored);
        QFETCH(int, exitCode);
        Scene scene;
        writeTheme(scene.remote.themesDirectory(), "aurora.theme.json", "Aurora", "light", {"Ann"}, "1.0.0");
        const QString commit = scene.remote.commitAll("A theme");
        SmartHttpServer server(scene.dir.path(), "ada", "s3cret");
        const QUrl url = server.url("remote");

        QTemporaryDir home;
        const QString log = home.filePath("helper.log");
        if (!stored.isEmpty()) {
            // A helper that knows one answer and notes what git asks of it.
            const QString helper = QStringLiteral("!f() { echo $1 >> '%1'; cat >/dev/null; test $1 = get && printf "
                                                  "'username=%2\\npassword=%3\\n'; true; }; f")
                                       .arg(log, stored.section(':', 0, 0), stored.section(':', 1));
            writeFile(home.path(), ".gitconfig", "[credential]\n\thelper = \"" + helper.toUtf8() + "\"\n");
        }
        QProcessEnvironment environment;
        environment.insert("HOME", home.path());
        environment.insert("XDG_CONFIG_HOME", home.filePath("config"));
        environment.insert("GIT_CONFIG_NOSYSTEM", "1");
        environment.insert("GIT_TERMINAL_PROMPT", "0");
        const Run run = runTool({"check", "--remote", url.toString(), "--clone", scene.clone}, environment);
        QVERIFY2(run.exitCode == exitCode, qPrintable(run.err));
        const QByteArray asked = readFile(log);
        if (exitCode == 0) {
            QCOMPARE(run.out, "update-available " + commit + "\n");
            QVERIFY(!readFile(scene.clone + "/.git/config").contains("s3cret"));
            QVERIFY2(asked.startsWith("get\n") && asked.endsWith("store\n"), asked.constData());
        } else {
            QVERIFY2(!asked.contains("store"), asked.constData());
        }
        QVERIFY(stored.isEmpty() || asked.contains("get"));
    }

    void aFailedCopyStopsTheBatch()
    {
        TrashSandbox trash;
        Scene scene;
        for (const QString name : {"Aurora", "Borealis", "Cirrus"})
            writeTheme(scene.remote.themesDirectory(), name.toLower() + ".theme.json", name, "dark", {}, "1.0.0");
        scene.remote.commitAll("Three themes");
        // A folder stands where Borealis goes, and the Trash cannot take it: it holds a file where its
        // "files" folder belongs.
        QVERIFY(QDir().mkpath(scene.installed + "/borealis.theme.json"));
        writeFile(trash.dataHome() + "/Trash", "files", "");

        const Run run = scene.run({"install", "--all"});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.lines(), QStringList{"installed Aurora"});
        QVERIFY2(run.err.startsWith("The theme 'borealis.theme.json' could not be copied. You can try to delete all "
                                    "local themes to start fresh.\n") && run.err.count('\n') == 2, qPrintable(run.err));
        QCOMPARE(QDir(scene.installed).entryList(QDir::Files | QDir::Hidden), QStringList{"aurora.theme.json"});
        QCOMPARE(trash.trashedNames(), QStringList{});
    }

    void showsTheClonesProgressOnATerminalOnly_data()
    {
        QTest::addColumn<bool>("checking");
        QTest::newRow("list") << false;
        QTest::newRow("check") << true;
    }

    void showsTheClonesProgressOnATerminalOnly()
    {
        QFETCH(bool, checking);
        if (QStandardPaths::findExecutable("script").isEmpty())
            QSKIP("needs script(1) for a terminal");
        Scene scene(true);
        QVERIFY(scene.daemon->isRunning());
        for (int index = 0; index < 300; ++index)
            writeTheme(scene.remote.themesDirectory(), QString("t%1.theme.json").arg(index), QString("T%1").arg(index),
                       "dark", {"Ann"}, "1.0.0");
        scene.publish();
        QStringList arguments{checking ? "check" : "list", "--remote", scene.daemon->url("remote").toString(), "--clone", scene.clone};
        if (!checking)
            arguments << "--installed" << scene.installed;
        // stderr on a terminal of its own, stdout to a file.
        const QString out = scene.dir.filePath("out.txt");
        QProcess terminal;
        terminal.start("script", {"-qec", QStringList(CORVANE_TOOL_PATH).join(' ') + ' ' + arguments.join(' ') + " > " + out, "/dev/null"});
        QVERIFY(terminal.waitForFinished(120000));
        QCOMPARE(terminal.exitCode(), 0);
        const QString shown = QString::fromUtf8(terminal.readAllStandardOutput());
        QVERIFY2(shown.contains("\r\x1b[KReceiving objects: ") && shown.contains("\r\x1b[KChecking out files: 303 of 303"),
                 qPrintable(shown.left(300)));
        QVERIFY2(shown.endsWith("\r\x1b[K"), "the progress line is not wiped");
        // Without a terminal (the clone is there now): the same output, nothing on stderr.
        const Run again = runTool(arguments);
        QCOMPARE(again.err, QString());
        QCOMPARE(QString::fromUtf8(readFile(out)), again.out);
        QCOMPARE(again.lines().size(), checking ? 1 : 303);
    }
};

QTEST_GUILESS_MAIN(CorvaneToolTest)
#include "CorvaneToolTest.moc"
