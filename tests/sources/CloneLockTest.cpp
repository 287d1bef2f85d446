// SPDX-License-Identifier: MIT
#include "Corvane/sources/CloneLock.h"
#include "Corvane/sources/SynchronizedRepository.h"

#include "ThemeRepositoryScene.h"

#include <QProcess>
#include <QTest>

#include <atomic>
#include <thread>

using namespace corvane;
using namespace corvane::test;
using namespace std::chrono_literals;

// Another synchronisation of the scene's clone, in this process or in another, that either keeps
// showing signs of life or has gone silent while staying alive.
class OtherHolder {
public:
    OtherHolder(const ThemeRepositoryScene& scene, bool otherProcess, bool working)
    {
        const QString lockPath = CloneLock::lockFilePath(scene.cloneUrl());
        if (otherProcess) {
            // flock(1) holds the lock file open and locked, as a live process holding the clone does.
            m_process.start("flock", {"--exclusive", lockPath, "sleep", "120"});
            m_process.waitForStarted();
            while (!QFileInfo::exists(lockPath))
                QThread::msleep(10);
            if (!working)
                QProcess::execute("touch", {"--no-create", "--date=1 hour ago", lockPath});
        } else {
            m_lock = CloneLock::acquire(scene.cloneUrl()).value();
        }
        if (working) {
            m_signs = std::thread([this, lockPath, otherProcess] {
                while (!m_stop) {
                    if (otherProcess)
                        QProcess::execute("touch", {"--no-create", lockPath});
                    else
                        m_lock->signOfLife();
                    QThread::msleep(100);
                }
            });
        }
    }

    ~OtherHolder()
    {
        m_stop = true;
        if (m_signs.joinable())
            m_signs.join();
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
    std::shared_ptr<CloneLock> m_lock;
    std::atomic<bool> m_stop{false};
    std::thread m_signs;
};

class CloneLockTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { CloneLock::setLimits({}); }

    // A synchronisation waits for one that is still working, up to its limit, and then says what it
    // waited for; a holder that went silent while alive is taken over.
    void waitsBoundedForAnotherSynchronisation_data()
    {
        QTest::addColumn<bool>("otherProcess");
        QTest::addColumn<bool>("working");
        for (bool otherProcess : {false, true}) {
            const char* where = otherProcess ? "another process" : "this process";
            QTest::addRow("working holder in %s", where) << otherProcess << true;
            QTest::addRow("silent holder in %s", where) << otherProcess << false;
        }
    }

    void waitsBoundedForAnotherSynchronisation()
    {
        QFETCH(bool, otherProcess);
        QFETCH(bool, working);
        ThemeRepositoryScene scene;
        const SynchronizedRepository synchronizedRepository(scene.cloneUrl(), scene.remoteUrl());
        QVERIFY(synchronizedRepository.synchronize());
        const QString before = scene.cloneHead();
        scene.commitTheme("Dawn");
        // A working holder is never silent for long enough to be taken over within the wait.
        CloneLock::setLimits(working ? CloneLock::Limits{800ms, 20s} : CloneLock::Limits{20s, 500ms});
        {
            OtherHolder holder(scene, otherProcess, working);
            const auto synchronized = synchronizedRepository.synchronize();
            if (working) {
                QVERIFY(!synchronized);
                const QString text = synchronized.error().errorDescription();
                QVERIFY2(text.startsWith(QString("Another synchronisation of the clone %1 has been running for ")
                                             .arg(CloneLock::canonicalPath(scene.cloneUrl())))
                             && text.endsWith(" seconds."),
                         qPrintable(text));
                QCOMPARE(scene.cloneHead(), before);
                return;
            }
            QVERIFY2(synchronized, qPrintable(synchronized ? QString() : synchronized.error().errorDescription()));
            QCOMPARE(scene.cloneHead(), scene.remote.headCommit());
        }
        // The holder that was taken over let go without removing the new holder's lock: the next
        // synchronisation finds the clone free.
        CloneLock::setLimits({100ms, 20s});
        QVERIFY(synchronizedRepository.synchronize());
    }
};

QTEST_GUILESS_MAIN(CloneLockTest)
#include "CloneLockTest.moc"
