// `corvane lint` run as a real process on real directories: what it prints, in which order, and the
// exit status, for theme authors checking a repository.

#include "ThemeFiles.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using corvane::test::writeFile;
using corvane::test::writeTheme;

namespace {

struct Run {
    int exitCode = -1;
    QString out;
    QString err;
};

Run lint(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral(CORVANE_TOOL), QStringList{"lint"} + arguments);
    Run run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        run.err = QStringLiteral("corvane lint did not finish");
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

QString decodingFailed(const QString& path, const QString& inner)
{
    return QStringLiteral("Theme decoding failed: Could not decode JSON, decoding JSON from '%1' failed: %2").arg(path, inner);
}

// A directory with good and broken theme files and things that are not theme files.
struct MixedDirectory {
    QTemporaryDir directory;
    QString grey;
    QString nameless;
    QString fifo;

    MixedDirectory()
    {
        const QString path = directory.path();
        writeTheme(path, "b.theme.json", "Beta", "Dark", {"X"}, "1.2");
        writeTheme(path, "A.theme.json", "Alpha", "light", {"Mara", "Tom"}, "2.1.0");
        grey = writeTheme(path, "c.theme.json", "Grey", "grey", {}, "1");
        nameless = writeFile(path, "d.theme.json", R"({"style": "dark", "author": [], "version": "1"})");
        writeTheme(path, ".hidden.theme.json", "Hidden", "dark", {}, "1");
        writeTheme(path, "tab\tname.theme.json", "New\nLine", "dark", {"a\tb"}, "3");
        writeTheme(path, QString::fromUtf8("\u00e9t\u00e9.theme.json"), QString::fromUtf8("\u00c9t\u00e9"), "light", {}, "1");
        writeFile(path, "readme.md", "not a theme");
        writeFile(path, "x.THEME.JSON", "not read");
        writeTheme(path + "/sub.theme.json", "inner.theme.json", "Inner", "dark", {}, "1");
        fifo = directory.filePath("pipe.theme.json");
        ::mkfifo(QFile::encodeName(fifo).constData(), 0644);
    }
};

} // namespace

class LintCommandTest : public QObject {
    Q_OBJECT

private slots:
    void reportsEveryFileInByteOrder()
    {
        MixedDirectory mixed;
        const Run run = lint({mixed.directory.path()});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.err, QString());
        const QStringList expected{
            ".hidden.theme.json\tHidden\tdark\t\t1.0.0",
            "A.theme.json\tAlpha\tlight\tMara, Tom\t2.1.0",
            "b.theme.json\tBeta\tdark\tX\t1.2.0",
            "c.theme.json\terror\t" + decodingFailed(mixed.grey, "Invalid style: grey"),
            "d.theme.json\terror\t" + decodingFailed(mixed.nameless, "No value associated with key \"name\"."),
            "pipe.theme.json\terror\tTheme decoding failed: Could not decode JSON, reading Data from '" + mixed.fifo
                + "' failed: It is not a regular file but a FIFO (named pipe).",
            "tab\\tname.theme.json\tNew\\nLine\tdark\ta\\tb\t3.0.0",
            QString::fromUtf8("\u00e9t\u00e9.theme.json\t\u00c9t\u00e9\tlight\t\t1.0.0"),
        };
        QCOMPARE(run.out.split(u'\n', Qt::SkipEmptyParts), expected);
        QVERIFY(run.out.endsWith(u'\n'));
    }

    void printsJson()
    {
        MixedDirectory mixed;
        const Run run = lint({mixed.directory.path(), "--json"});
        QCOMPARE(run.exitCode, 1);
        QJsonParseError parseError;
        const QJsonDocument document = QJsonDocument::fromJson(run.out.toUtf8(), &parseError);
        QCOMPARE(parseError.error, QJsonParseError::NoError);
        const QJsonArray entries = document.array();
        QCOMPARE(entries.size(), 8);

        QCOMPARE(entries[1].toObject(), (QJsonObject{{"file", "A.theme.json"},
                                                      {"name", "Alpha"},
                                                      {"style", "light"},
                                                      {"authors", QJsonArray{"Mara", "Tom"}},
                                                      {"version", "2.1.0"}}));
        QCOMPARE(entries[3].toObject(),
                 (QJsonObject{{"file", "c.theme.json"}, {"error", decodingFailed(mixed.grey, "Invalid style: grey")}}));
        // Names are data in JSON: nothing escaped twice.
        QCOMPARE(entries[6].toObject().value("file").toString(), QStringLiteral("tab\tname.theme.json"));
        QCOMPARE(entries[6].toObject().value("name").toString(), QStringLiteral("New\nLine"));
        QCOMPARE(entries[6].toObject().value("authors").toArray(), QJsonArray{"a\tb"});
    }

    void exitStatus_data()
    {
        QTest::addColumn<QString>("setup"); // "good", "empty", "missing", "file"
        QTest::addColumn<QStringList>("extra");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err"); // "%1" stands for the directory

        QTest::newRow("all good") << "good" << QStringList{} << 0 << "g.theme.json\tGood\tdark\tAnn\t1.0.0\n" << "";
        QTest::newRow("empty directory") << "empty" << QStringList{} << 0 << "" << "";
        QTest::newRow("empty directory as JSON") << "empty" << QStringList{"--json"} << 0 << "[]\n" << "";
        QTest::newRow("missing directory")
            << "missing" << QStringList{} << 1 << ""
            << "Theme decoding failed: File at file://%1 appears not to be a directory.\n";
        QTest::newRow("a file, not a directory")
            << "file" << QStringList{"--json"} << 1 << ""
            << "Theme decoding failed: File at file://%1 appears not to be a directory.\n";
        QTest::newRow("two directories") << "good" << QStringList{"/tmp"} << 2 << ""
                                         << "usage: corvane lint DIR [--json]\ncorvane lint: only one DIR is taken\n";
    }

    void exitStatus()
    {
        QFETCH(QString, setup);
        QFETCH(QStringList, extra);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        QFETCH(QString, err);

        QTemporaryDir root;
        QString directory = root.filePath("themes");
        if (setup == u"good")
            writeTheme(directory, "g.theme.json", "Good", "dark", {"Ann"}, "1");
        else if (setup == u"empty")
            QVERIFY(QDir().mkpath(directory));
        else if (setup == u"file")
            directory = writeFile(root.path(), "plain", "x");

        const Run run = lint(QStringList{directory} + extra);
        QCOMPARE(run.exitCode, exitCode);
        if (exitCode == 2) {
            QVERIFY(run.out.isEmpty());
            QVERIFY(run.err.startsWith(u"usage: corvane lint DIR [--json]\n"));
            if (!err.isEmpty())
                QCOMPARE(run.err, err);
            return;
        }
        QCOMPARE(run.out, out);
        QCOMPARE(run.err, QString(err).replace("%1", directory));
    }

    void noDirectoryIsBadUsage()
    {
        const Run run = lint({});
        QCOMPARE(run.exitCode, 2);
        QCOMPARE(run.err, QStringLiteral("usage: corvane lint DIR [--json]\ncorvane lint: DIR is required\n"));
    }
};

QTEST_GUILESS_MAIN(LintCommandTest)
#include "LintCommandTest.moc"
