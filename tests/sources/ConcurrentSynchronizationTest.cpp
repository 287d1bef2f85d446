#include "Corvane/module/CorvaneService.h"
#include "Corvane/sources/SynchronizedRepository.h"

#include "ThemeRepositoryScene.h"

#include <QProcess>
#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace corvane;
using namespace corvane::test;

namespace {

struct Outcome {
    int exitCode = -1;
    QString out;
    QString err;
};

Outcome runTool(const QStringList& arguments)
{
    QProcess tool;
    tool.start(QStringLiteral(CORVANE_TOOL_PATH), arguments);
    if (!tool.waitForFinished(60000))
        return {};
    return {tool.exitStatus() == QProcess::NormalExit ? tool.exitCode() : -1,
            QString::fromUtf8(tool.readAllStandardOutput()), QString::fromUtf8(tool.readAllStandardError())};
}

} // namespace

class ConcurrentSynchronizationTest : public QObject {
    Q_OBJECT

private slots:
    void checkCommand_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out"); // "HEAD" stands for the remote's head commit

        QTest::newRow("no commit remembered") << "no since" << 0 << "update-available HEAD\n";
        QTest::newRow("remembered the head") << "since head" << 0 << "up-to-date\n";
        QTest::newRow("remembered an abbreviation") << "since prefix" << 0 << "update-available HEAD\n";
        QTest::newRow("remote gone") << "remote gone" << 1 << "";
        QTest::newRow("no clone directory given") << "no clone" << 2 << "";
    }

    void checkCommand()
    {
        QFETCH(QString, situation);
        QFETCH(int, exitCode);
        QFETCH(QString, out);
        ThemeRepositoryScene scene;
        const QString head = scene.remote().headCommit();
        QStringList arguments{QStringLiteral("check"), QStringLiteral("--remote"), scene.remoteUrl().toString()};
        if (situation != u"no clone")
            arguments << QStringLiteral("--clone") << scene.clonePath();
        if (situation == u"since head")
            arguments << QStringLiteral("--since") << head;
        if (situation == u"since prefix")
            arguments << QStringLiteral("--since") << head.left(12);
        if (situation == u"remote gone")
            scene.takeRemoteAway();

        const Outcome outcome = runTool(arguments);
        QCOMPARE(outcome.exitCode, exitCode);
        QCOMPARE(outcome.out, QString(out).replace(QStringLiteral("HEAD"), head));
        QCOMPARE(outcome.err.isEmpty(), exitCode == 0);
        if (exitCode == 2)
            QVERIFY(outcome.err.startsWith(QStringLiteral("usage: corvane check")));
    }

    // Repository checks and synchronisations of one clone, at once, from threads of this process and
    // from other processes: libgit2 locks nothing itself, so without the clone's lock some of them fail
    // on the index or reference lock files.
    void checksAndSynchronisationsOfOneCloneAtOnce()
    {
        ThemeRepositoryScene scene;
        const SynchronizedRepository synchronizedRepository(scene.cloneUrl(), scene.remoteUrl());
        QVERIFY(synchronizedRepository.synchronize());
        const Configuration configuration(scene.remoteUrl(), scene.cloneUrl(), QUrl());

        constexpr int rounds = 30;
        constexpr int processes = 3;
        constexpr int threads = 3;
        QStringList failures;
        for (int round = 0; round < rounds; ++round) {
            const QString head = scene.commitTheme(QStringLiteral("Round %1.theme.json").arg(round),
                                                   QStringLiteral("Round %1").arg(round), QStringLiteral("1.0.0"));
            std::vector<std::unique_ptr<QProcess>> tools;
            for (int index = 0; index < processes; ++index) {
                auto tool = std::make_unique<QProcess>();
                tool->start(QStringLiteral(CORVANE_TOOL_PATH),
                            {QStringLiteral("check"), QStringLiteral("--remote"), scene.remoteUrl().toString(),
                             QStringLiteral("--clone"), scene.clonePath(), QStringLiteral("--since"), head});
                tools.push_back(std::move(tool));
            }
            std::atomic<int> threadFailures{0};
            std::vector<std::thread> workers;
            for (int index = 0; index < threads; ++index) {
                workers.emplace_back([&, index] {
                    if (index == 0) {
                        if (!std::holds_alternative<UpToDate>(CorvaneService(configuration).repositoryStatus(head)))
                            ++threadFailures;
                        return;
                    }
                    const auto repository = synchronizedRepository.synchronize();
                    if (!repository || repository->HEAD()->oid().description() != head)
                        ++threadFailures;
                });
            }
            for (std::thread& worker : workers)
                worker.join();
            for (const auto& tool : tools) {
                if (!tool->waitForFinished(60000) || tool->exitCode() != 0
                    || tool->readAllStandardOutput() != "up-to-date\n")
                    failures << QStringLiteral("round %1: corvane check: %2").arg(round).arg(QString::fromUtf8(tool->readAllStandardError()));
            }
            if (threadFailures)
                failures << QStringLiteral("round %1: %2 threads failed").arg(round).arg(threadFailures.load());
        }
        QVERIFY2(failures.isEmpty(), qPrintable(failures.join(u'\n')));

        QProcess fsck;
        fsck.setWorkingDirectory(scene.clonePath());
        fsck.start(QStringLiteral("git"), {QStringLiteral("fsck"), QStringLiteral("--full"), QStringLiteral("--strict")});
        QVERIFY(fsck.waitForFinished(60000));
        QVERIFY2(fsck.exitCode() == 0, fsck.readAllStandardError().constData());
        QCOMPARE(scene.cloneRevision(), scene.remote().headCommit());
        QCOMPARE(runGit(scene.clonePath(), {QStringLiteral("status"), QStringLiteral("--porcelain")}), QString());
    }
};

QTEST_GUILESS_MAIN(ConcurrentSynchronizationTest)
#include "ConcurrentSynchronizationTest.moc"
