// SPDX-License-Identifier: MIT
// What a synchronisation tells while it runs: a real first clone over file:// and git://, and the
// thinning of its reports to what a person can read.
#include "Corvane/sources/ProgressThrottle.h"
#include "Corvane/sources/SynchronizedRepository.h"

#include "ThemeRepositoryScene.h"

#include <QRegularExpression>
#include <QTest>

#include <chrono>

using namespace corvane;
using namespace corvane::test;
using Stage = SynchronizationProgress::Stage;

Q_DECLARE_METATYPE(corvane::test::Served)

namespace {

// "r3/10" receiving 3 of 10, "d" resolving, "c" checking out; several separated by spaces.
QList<SynchronizationProgress> parse(const QString& reports)
{
    QList<SynchronizationProgress> parsed;
    static const QRegularExpression report(QStringLiteral("([rdc])(\\d+)/(\\d+)"));
    for (auto match = report.globalMatch(reports); match.hasNext();) {
        const auto found = match.next();
        const QChar stage = found.captured(1).at(0);
        parsed.append({stage == u'r' ? Stage::receiving : stage == u'd' ? Stage::resolving : Stage::checkingOut,
                       found.captured(2).toLongLong(), found.captured(3).toLongLong(), 0});
    }
    return parsed;
}

QString format(const QList<SynchronizationProgress>& reports)
{
    QStringList texts;
    for (const SynchronizationProgress& progress : reports) {
        const char stage = progress.stage == Stage::receiving ? 'r' : progress.stage == Stage::resolving ? 'd' : 'c';
        texts << QStringLiteral("%1%2/%3").arg(QChar::fromLatin1(stage)).arg(progress.done).arg(progress.total);
    }
    return texts.join(u' ');
}

} // namespace

class SynchronizationProgressTest : public QObject {
    Q_OBJECT

private slots:
    void aFirstCloneReportsEachStageForwardToItsTotal_data()
    {
        QTest::addColumn<Served>("served");
        QTest::newRow("file://") << Served::file;
        QTest::newRow("git://") << Served::git;
    }

    void aFirstCloneReportsEachStageForwardToItsTotal()
    {
        QFETCH(Served, served);
        ThemeRepositoryScene scene(served);
        // Two versions of every theme, so the transfer carries deltas to resolve as well.
        constexpr int themes = 150;
        for (const char* version : {"1.0.0", "1.1.0"}) {
            for (int index = 0; index < themes; ++index)
                writeTheme(scene.remote.themesDirectory(), QStringLiteral("T%1.theme.json").arg(index),
                           QStringLiteral("Theme number %1 with a longer name").arg(index), "dark",
                           {"Ada", "Grace", "Edsger"}, version);
            scene.remote.commitAll(QStringLiteral("Version %1").arg(version));
        }
        QList<SynchronizationProgress> reports;
        SynchronizedRepository repository(scene.cloneUrl(), scene.remoteUrl());
        repository.reportProgressTo([&reports](const SynchronizationProgress& progress) { reports.append(progress); });

        {
            // Holds the clone until dropped.
            const auto synchronized = repository.synchronize();
            QVERIFY2(synchronized, qPrintable(synchronized ? QString() : synchronized.error().errorDescription()));
        }
        QCOMPARE(scene.cloneHead(), scene.remote.headCommit());

        QVERIFY(!reports.isEmpty());
        QMap<Stage, SynchronizationProgress> last;
        for (qsizetype index = 0; index < reports.size(); ++index) {
            const SynchronizationProgress& report = reports.at(index);
            QVERIFY2(report.done <= report.total, qPrintable(format({report})));
            if (index == 0)
                continue;
            const SynchronizationProgress& before = reports.at(index - 1);
            QVERIFY2(before.stage <= report.stage, qPrintable(format({before, report})));
            if (before.stage == report.stage) {
                QVERIFY2(before.done <= report.done && before.total == report.total && before.bytes <= report.bytes,
                         qPrintable(format({before, report})));
            }
        }
        for (const SynchronizationProgress& report : std::as_const(reports))
            last[report.stage] = report;
        QVERIFY(last.contains(Stage::receiving) && last.contains(Stage::checkingOut));
        for (const SynchronizationProgress& report : std::as_const(last))
            QVERIFY2(report.isComplete(), qPrintable(format({report})));
        QVERIFY(last[Stage::receiving].bytes > 0);
        // Every file of the tree: the themes, Dusk and the README.
        QCOMPARE(last[Stage::checkingOut].total, themes + 2);

        // Nothing new: the next synchronisation has nothing to report.
        reports.clear();
        QVERIFY(repository.synchronize());
        QCOMPARE(format(reports), QString());
    }

    void theThrottleKeepsTheStartAndEndOfEachStage_data()
    {
        QTest::addColumn<QString>("reported");
        QTest::addColumn<QString>("passed");
        QTest::newRow("one stage") << "r0/10 r1/10 r5/10 r9/10 r10/10" << "r0/10 r10/10";
        QTest::newRow("every stage") << "r1/4 r2/4 r4/4 d0/3 d2/3 d3/3 c1/5 c3/5 c5/5" << "r1/4 r4/4 d0/3 d3/3 c1/5 c5/5";
        QTest::newRow("repeats") << "r0/2 r0/2 r2/2 r2/2" << "r0/2 r2/2";
        QTest::newRow("a stage without its end") << "r1/9 r8/9 c1/2 c2/2" << "r1/9 c1/2 c2/2";
        QTest::newRow("the next synchronisation") << "c1/2 c2/2 r0/3 r3/3 c2/2" << "c1/2 c2/2 r0/3 r3/3 c2/2";
    }

    void theThrottleKeepsTheStartAndEndOfEachStage()
    {
        QFETCH(QString, reported);
        QFETCH(QString, passed);
        QList<SynchronizationProgress> received;
        // An interval no test outlasts: only what must pass does.
        const auto report = ProgressThrottle::wrap(
            [&received](const SynchronizationProgress& progress) { received.append(progress); }, std::chrono::hours(1));
        for (const SynchronizationProgress& progress : parse(reported))
            report(progress);
        QCOMPARE(format(received), passed);
    }
};

QTEST_GUILESS_MAIN(SynchronizationProgressTest)
#include "SynchronizationProgressTest.moc"
