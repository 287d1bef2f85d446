#include "Corvane/module/CorvaneModule.h"

#include "GitRepositoryFixture.h"
#include "ThemeFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

using namespace corvane;
using namespace corvane::test;

namespace {

// What one hasUpdates call delivered, and how.
struct Delivery {
    int calls = 0;
    bool onMainThread = true;
    bool duringTheCall = false;
    std::optional<ThemeRepositoryStatus> status;
};

// Calls hasUpdates and waits (running the event loop) for the callback, then a little longer, so a
// second call of the callback would be seen.
Delivery check(const CorvaneModule& module, const std::optional<QString>& sinceCommit)
{
    auto delivery = std::make_shared<Delivery>();
    auto inCall = std::make_shared<bool>(true);
    module.hasUpdates(sinceCommit, [delivery, inCall](ThemeRepositoryStatus status) {
        ++delivery->calls;
        delivery->onMainThread = delivery->onMainThread && QThread::currentThread() == qApp->thread();
        delivery->duringTheCall = delivery->duringTheCall || *inCall;
        delivery->status = std::move(status);
    });
    *inCall = false;
    (void)QTest::qWaitFor([&] { return delivery->calls > 0; }, 60000);
    QTest::qWait(50);
    return *delivery;
}

QString describe(const ThemeRepositoryStatus& status)
{
    if (const auto* update = std::get_if<UpdateAvailable>(&status))
        return QStringLiteral("update-available ") + update->commit;
    if (const auto* failure = std::get_if<RepositoryCheckFailure>(&status))
        return QStringLiteral("failure: ") + failure->error.errorDescription();
    return QStringLiteral("up-to-date");
}

} // namespace

class RepositoryCheckTest : public QObject {
    Q_OBJECT

private slots:
    void comparesWithTheRememberedCommit_data()
    {
        QTest::addColumn<QString>("since"); // "HEAD" and "PREVIOUS" stand for the remote's two commits
        QTest::addColumn<bool>("absent");
        QTest::addColumn<bool>("upToDate");

        QTest::newRow("absent") << QString() << true << false;
        QTest::newRow("the head commit") << "HEAD" << false << true;
        QTest::newRow("the head commit in capitals") << "HEAD upper" << false << true;
        QTest::newRow("empty") << "" << false << false;
        QTest::newRow("not hexadecimal") << "not a commit id at all, forty letters..." << false << false;
        QTest::newRow("abbreviated head") << "HEAD prefix" << false << false;
        QTest::newRow("head with a trailing newline") << "HEAD newline" << false << false;
        QTest::newRow("the commit before") << "PREVIOUS" << false << false;
    }

    void comparesWithTheRememberedCommit()
    {
        QFETCH(QString, since);
        QFETCH(bool, absent);
        QFETCH(bool, upToDate);

        QTemporaryDir root;
        GitRepositoryFixture remote(root.filePath(QStringLiteral("remote")));
        writeTheme(remote.themesDirectory(), QStringLiteral("a.theme.json"), QStringLiteral("A"), QStringLiteral("dark"), {}, QStringLiteral("1"));
        const QString previous = remote.commitAll(QStringLiteral("one"));
        writeTheme(remote.themesDirectory(), QStringLiteral("b.theme.json"), QStringLiteral("B"), QStringLiteral("dark"), {}, QStringLiteral("1"));
        const QString head = remote.commitAll(QStringLiteral("two"));

        QString sinceCommit = since;
        if (since.startsWith(u"HEAD")) {
            sinceCommit = since.endsWith(u"upper") ? head.toUpper()
                : since.endsWith(u"prefix")        ? head.left(7)
                : since.endsWith(u"newline")       ? head + u'\n'
                                                   : head;
        } else if (since == u"PREVIOUS") {
            sinceCommit = previous;
        }

        const CorvaneModule module(Configuration(remote.fileUrl(), QUrl::fromLocalFile(root.filePath(QStringLiteral("clone"))),
                                                 QUrl::fromLocalFile(root.filePath(QStringLiteral("installed")))));
        const Delivery delivery = check(module, absent ? std::nullopt : std::optional(sinceCommit));

        QCOMPARE(delivery.calls, 1);
        QVERIFY(delivery.onMainThread);
        QVERIFY(!delivery.duringTheCall);
        const ThemeRepositoryStatus expected = upToDate ? ThemeRepositoryStatus(UpToDate{}) : UpdateAvailable{head};
        QCOMPARE(describe(*delivery.status), describe(expected));
        // The check leaves the clone synchronised, whatever it reports.
        QCOMPARE(runGit(root.filePath(QStringLiteral("clone")), {QStringLiteral("rev-parse"), QStringLiteral("HEAD")}), head);
    }

    // No offline fallback: with a good clone, an unreachable remote is a failure, delivered like any
    // other status.
    void unreachableRemoteFails()
    {
        QTemporaryDir root;
        GitRepositoryFixture remote(root.filePath(QStringLiteral("remote")));
        const QString head = remote.commitAll(QStringLiteral("one"));
        const QUrl clone = QUrl::fromLocalFile(root.filePath(QStringLiteral("clone")));
        QCOMPARE(describe(*check(CorvaneModule(Configuration(remote.fileUrl(), clone, QUrl())), head).status),
                 QStringLiteral("up-to-date"));
        QVERIFY(QDir(root.path()).rename(QStringLiteral("remote"), QStringLiteral("gone")));

        const Delivery delivery = check(CorvaneModule(Configuration(remote.fileUrl(), clone, QUrl())), head);
        QCOMPARE(delivery.calls, 1);
        QVERIFY(delivery.onMainThread);
        QVERIFY(!delivery.duringTheCall);
        const auto* failure = std::get_if<RepositoryCheckFailure>(&*delivery.status);
        QVERIFY2(failure, qPrintable(describe(*delivery.status)));
        QVERIFY(failure->error.code() < 0);
        QCOMPARE(failure->error.errorDescription(), failure->error.message());
        QVERIFY(!failure->error.message().isEmpty());
    }

    // Checks started from other threads still answer on the main thread, each exactly once.
    void checksFromAnyThreadAnswerOnTheMainThread()
    {
        QTemporaryDir root;
        GitRepositoryFixture remote(root.filePath(QStringLiteral("remote")));
        const QString head = remote.commitAll(QStringLiteral("one"));
        const CorvaneModule module(Configuration(remote.fileUrl(), QUrl::fromLocalFile(root.filePath(QStringLiteral("clone"))), QUrl()));

        constexpr int checks = 4;
        std::atomic<int> answers{0};
        std::atomic<int> offMainThread{0};
        std::atomic<int> notUpToDate{0};
        std::vector<std::unique_ptr<QThread>> callers;
        for (int index = 0; index < checks; ++index) {
            callers.emplace_back(QThread::create([&] {
                module.hasUpdates(head, [&](ThemeRepositoryStatus status) {
                    ++answers;
                    offMainThread += QThread::currentThread() != qApp->thread();
                    notUpToDate += !std::holds_alternative<UpToDate>(status);
                });
            }));
            callers.back()->start();
        }
        for (auto& caller : callers)
            caller->wait();
        QTRY_COMPARE_WITH_TIMEOUT(answers.load(), checks, 60000);
        QTest::qWait(50);
        QCOMPARE(answers.load(), checks);
        QCOMPARE(offMainThread.load(), 0);
        QCOMPARE(notUpToDate.load(), 0);
    }
};

QTEST_GUILESS_MAIN(RepositoryCheckTest)
#include "RepositoryCheckTest.moc"
