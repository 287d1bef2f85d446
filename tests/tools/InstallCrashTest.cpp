// SPDX-License-Identifier: MIT
// `corvane install --all` killed with SIGKILL at random moments, 50 times over 2,000 updates: at every
// moment each installed theme file holds its old or its new content whole (or, between the two steps
// of a replacement, the old file lies in the Trash), and the next run leaves no debris. Every fifth
// killed run is then undone: the undo takes back what the run did or refuses, naming the file, and
// changes nothing that breaks the above.

#include "GitRepositoryFixture.h"
#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QDir>
#include <QHash>
#include <QProcess>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <unistd.h>

using namespace corvane::test;

namespace {

constexpr int themeCount = 2000;
constexpr int killCount = 50;

QString fileName(int index)
{
    return QStringLiteral("theme-%1.theme.json").arg(index, 4, 10, QLatin1Char('0'));
}

// Large enough that a file cut short could never pass for a whole one.
QByteArray content(int index, const QString& version)
{
    QStringList authors;
    for (int author = 0; author < 40; ++author)
        authors << QStringLiteral("Author %1 of theme %2").arg(author).arg(index);
    return themeJson(QStringLiteral("Theme %1").arg(index, 4, 10, QLatin1Char('0')), "dark", authors, version);
}

QStringList hiddenNames(const QString& directory)
{
    return QDir(directory).entryList(QStringList{".*"}, QDir::Files | QDir::Hidden | QDir::System);
}

} // namespace

class InstallCrashTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_root;
    TrashSandbox m_trash;
    QString m_clone = m_root.filePath("clone"), m_installed = m_root.filePath("installed");
    QHash<QByteArray, int> m_old, m_new; // content to theme index

    QStringList arguments(const QString& command) const
    {
        return {command, "--remote", m_root.filePath("remote"), "--clone", m_clone, "--installed", m_installed};
    }

    // How many themes are still old. Fails the test when any installed file is neither old nor new
    // content, or when a replaced file is neither in place nor in the Trash.
    int checkInstalledState()
    {
        QSet<int> trashedOld;
        for (const QString& name : m_trash.trashedNames()) {
            const QByteArray trashed = readFile(m_trash.filesDirectory() + '/' + name);
            if (!m_old.contains(trashed) && !m_new.contains(trashed)) // a new one, when an undo took it back
                qWarning("the Trash holds %s, which is no theme file", qPrintable(name));
            else
                trashedOld.insert(m_old.value(trashed));
        }
        int stillOld = 0;
        for (int index = 0; index < themeCount; ++index) {
            const QString path = m_installed + '/' + fileName(index);
            if (!QFileInfo::exists(path)) {
                if (trashedOld.contains(index))
                    continue;
                qWarning("%s is neither installed nor in the Trash", qPrintable(fileName(index)));
                return -1;
            }
            const QByteArray installed = readFile(path);
            if (m_old.value(installed, -1) == index)
                ++stillOld;
            else if (m_new.value(installed, -1) != index) {
                qWarning("%s holds neither its old nor its new content whole", qPrintable(fileName(index)));
                return -1;
            }
        }
        return stillOld;
    }

private slots:
    void initTestCase()
    {
        GitRepositoryFixture remote(m_root.filePath("remote"));
        for (int index = 0; index < themeCount; ++index) {
            const QByteArray older = content(index, "1.0.0"), newer = content(index, "2.0.0");
            m_old.insert(older, index);
            m_new.insert(newer, index);
            writeFile(remote.themesDirectory(), fileName(index), newer);
            writeFile(m_installed, fileName(index), older);
        }
        remote.commitAll("2,000 themes");
        // The clone is made once, whole; the kills below hit its later synchronisations.
        QProcess list;
        list.start(CORVANE_TOOL_PATH, arguments("list"));
        QVERIFY(list.waitForFinished(120000) && list.exitCode() == 0);
        QCOMPARE(list.readAllStandardOutput().count('\n'), themeCount);
    }

    void survivesKills()
    {
        // Reproducible: the run's number is printed, and CORVANE_CRASH_RUN replays that run.
        const quint32 run = qEnvironmentVariableIsSet("CORVANE_CRASH_RUN")
            ? qEnvironmentVariable("CORVANE_CRASH_RUN").toUInt()
            : QRandomGenerator::system()->generate();
        qInfo("run %u", run);
        QRandomGenerator random(run);

        int remaining = themeCount;
        int trashedByUndo = 0, undosDone = 0, undosRefused = 0;
        for (int kill = 0; kill < killCount; ++kill) {
            QProcess install;
            install.start(CORVANE_TOOL_PATH, arguments("install") << "--all");
            QVERIFY(install.waitForStarted());
            if (kill % 5 == 4) {
                // Any moment, the synchronisation and the reading included.
                QTest::qSleep(int(random.bounded(400)));
            } else {
                // Somewhere among the copies, spread so that the 50 kills cover the 2,000 updates.
                const qsizetype lines = random.bounded(remaining / (killCount - kill + 1) + 1);
                QByteArray out;
                while (out.count('\n') < lines && install.state() == QProcess::Running) {
                    install.waitForReadyRead(1000);
                    out += install.readAllStandardOutput();
                }
                ::usleep(random.bounded(3000u));
            }
            ::kill(pid_t(install.processId()), SIGKILL);
            QVERIFY(install.waitForFinished(60000));
            remaining = checkInstalledState();
            QVERIFY2(remaining >= 0, qPrintable(QStringLiteral("after kill %1").arg(kill + 1)));
            if (kill % 5 == 2) {
                QProcess undo;
                undo.start(CORVANE_TOOL_PATH, {"undo", "--installed", m_installed});
                QVERIFY(undo.waitForFinished(120000));
                const QByteArray out = undo.readAllStandardOutput(), err = undo.readAllStandardError();
                QVERIFY2(undo.exitCode() == 0 ? err.isEmpty()
                                              : out.isEmpty() && (err.startsWith("The last install stopped while replacing '")
                                                                  || err.startsWith("There is no install to undo")),
                         err.constData());
                trashedByUndo += int(out.count("trashed "));
                ++(undo.exitCode() == 0 ? undosDone : undosRefused);
                const int before = remaining;
                remaining = checkInstalledState();
                QVERIFY2(remaining == before + int(out.count("restored ")),
                         qPrintable(QStringLiteral("after the undo after kill %1").arg(kill + 1)));
            }
        }
        qInfo("%d of %d themes were still old after %d kills; %d undos done, %d refused", remaining, themeCount,
              killCount, undosDone, undosRefused);

        QProcess install;
        install.start(CORVANE_TOOL_PATH, arguments("install") << "--all");
        QVERIFY(install.waitForFinished(300000));
        QCOMPARE(install.readAllStandardError(), QByteArray());
        QCOMPARE(install.exitCode(), 0);

        QCOMPARE(checkInstalledState(), 0);
        QCOMPARE(hiddenNames(m_installed), QStringList{}); // no temporary file left
        // Every old file lies in the Trash once, each with its info file, and no info file is alone.
        QStringList trashed = m_trash.trashedNames(), described;
        for (const QString& info : QDir(m_trash.infoDirectory()).entryList(QDir::Files | QDir::Hidden))
            described << info.chopped(QStringLiteral(".trashinfo").size());
        trashed.sort();
        described.sort();
        QCOMPARE(described, trashed);
        QCOMPARE(trashed.size(), themeCount + trashedByUndo);
    }
};

QTEST_GUILESS_MAIN(InstallCrashTest)
#include "InstallCrashTest.moc"
