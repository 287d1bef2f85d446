// SPDX-License-Identifier: MIT
#include "Corvane/module/CorvaneService.h"
#include "Corvane/sources/SynchronizedRepository.h"

#include "ThemeRepositoryScene.h"

#include <QProcess>
#include <QTest>

#include <future>

using namespace corvane;
using namespace corvane::test;

class ConcurrentSynchronizationTest : public QObject {
    Q_OBJECT

private slots:
    // Checks and synchronisations of one clone at once, from threads and from other processes. libgit2
    // locks nothing itself: without the clone's lock some of them fail on git's own lock files.
    void checksAndSynchronisationsOfOneCloneAtOnce()
    {
        ThemeRepositoryScene scene;
        const SynchronizedRepository synchronizedRepository(scene.cloneUrl(), scene.remoteUrl());
        QVERIFY(synchronizedRepository.synchronize());
        const Configuration configuration(scene.remoteUrl(), scene.cloneUrl(), QUrl());
        QStringList failures;
        for (int round = 0; round < 30; ++round) {
            const QString head = scene.commitTheme(QString("Round %1").arg(round));
            QProcess tools[3];
            for (QProcess& tool : tools) {
                tool.start(CORVANE_TOOL_PATH, {"check", "--remote", scene.remoteUrl().toString(), "--clone", scene.clonePath(),
                                               "--since", head});
            }
            const auto synchronize = [&] {
                const auto repository = synchronizedRepository.synchronize();
                return repository && repository->HEAD()->oid().description() == head;
            };
            auto first = std::async(std::launch::async, synchronize), second = std::async(std::launch::async, synchronize);
            auto checked = std::async(std::launch::async, [&] {
                return std::holds_alternative<UpToDate>(CorvaneService(configuration).repositoryStatus(head));
            });
            if (!first.get() || !second.get() || !checked.get())
                failures << QString("round %1: a thread failed").arg(round);
            for (QProcess& tool : tools) {
                if (!tool.waitForFinished(60000) || tool.exitCode() != 0 || tool.readAllStandardOutput() != "up-to-date\n")
                    failures << QString("round %1: corvane check: %2").arg(round).arg(QString(tool.readAllStandardError()));
            }
        }
        QVERIFY2(failures.isEmpty(), qPrintable(failures.join('\n')));
        QCOMPARE(runGit(scene.clonePath(), {"fsck", "--full", "--strict", "--no-dangling"}), QString());
        QCOMPARE(scene.cloneHead(), scene.remote.headCommit());
        QCOMPARE(runGit(scene.clonePath(), {"status", "--porcelain"}), QString());
    }
};

QTEST_GUILESS_MAIN(ConcurrentSynchronizationTest)
#include "ConcurrentSynchronizationTest.moc"
