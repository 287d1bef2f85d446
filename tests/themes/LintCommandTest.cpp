// SPDX-License-Identifier: MIT
// `corvane lint` run as a real process on real directories: what it prints, in which order, its exit status.

#include "ThemeFiles.h"

#include <QDir>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace corvane::test;

class LintCommandTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_root; // "ROOT" in the rows

private slots:
    void initTestCase()
    {
        const QString mixed = m_root.filePath("mixed");
        writeTheme(mixed, "b.theme.json", "Beta", "Dark", {"X"}, "1.2");
        writeTheme(mixed, "A.theme.json", "Alpha", "light", {"Mara", "Tom"}, "2.1.0");
        writeTheme(mixed, "c.theme.json", "Grey", "grey", {}, "1");
        writeTheme(mixed, "tab\tname.theme.json", "New\nLine", "dark", {"a\tb"}, "3");
        writeTheme(mixed, "\u00e9t\u00e9.theme.json", "\u00c9t\u00e9", "light", {}, "1");
        QCOMPARE(::mkfifo(QFile::encodeName(mixed + "/pipe.theme.json").constData(), 0644), 0);
        QVERIFY(QDir().mkpath(m_root.filePath("empty")));
    }

    // An output starting with "[" is compared as JSON.
    void lint_data()
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

    void lint()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        QFETCH(QString, err);

        QProcess process;
        process.start(CORVANE_TOOL, QStringList{"lint"} + arguments.replaceInStrings("ROOT", m_root.path()));
        QVERIFY(process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit);
        QCOMPARE(process.exitCode(), exitCode);
        QCOMPARE(QString::fromUtf8(process.readAllStandardError()), err.replace("ROOT", m_root.path()));
        const QByteArray printed = process.readAllStandardOutput();
        out.replace("ROOT", m_root.path());
        if (out.startsWith(u'[')) {
            QVERIFY(QJsonDocument::fromJson(out.toUtf8()).isArray());
            QCOMPARE(QJsonDocument::fromJson(printed), QJsonDocument::fromJson(out.toUtf8()));
        } else {
            QCOMPARE(QString::fromUtf8(printed), out);
        }
    }
};

QTEST_GUILESS_MAIN(LintCommandTest)
#include "LintCommandTest.moc"
