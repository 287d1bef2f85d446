// corvane show as a script runs it: the real program, a real repository, a PNG on disk.
#include "GitRepositoryFixture.h"
#include "ThemeFiles.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace corvane::test;

namespace {

struct Run {
    int status = -1;
    QString standardError;
};

Run runShow(const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(CORVANE_TOOL), QStringList{QStringLiteral("show")} + arguments);
    if (!process.waitForFinished(120000))
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

class ShowCommandTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_directory.isValid());
        writeTheme(m_remote.themesDirectory(), QStringLiteral("ember.theme.json"), QStringLiteral("Ember"),
                   QStringLiteral("dark"), {QStringLiteral("Priya")}, QStringLiteral("1.4.2"));
        m_remote.commitAll(QStringLiteral("Ember"));
    }

    void screenshots_data()
    {
        QTest::addColumn<QString>("remote");        // "" for the fixture's repository
        QTest::addColumn<QString>("screenshot");    // relative to the test's directory
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("errorContains"); // on stderr; "" for nothing at all
        QTest::addColumn<bool>("written");

        QTest::newRow("rows") << "" << "rows.png" << 0 << "" << true;
        QTest::newRow("a failed refresh is captured with its alert, then fails")
            << "no-such-repository" << "failed.png" << 1 << "Computing theme differences failed" << true;
        QTest::newRow("an unwritable file fails") << "" << "missing/dir/rows.png" << 1 << "could not write" << false;
    }

    void screenshots()
    {
        QFETCH(QString, remote);
        QFETCH(QString, screenshot);
        QFETCH(int, status);
        QFETCH(QString, errorContains);
        QFETCH(bool, written);

        const QString clone = m_directory.filePath(QStringLiteral("clone-") + QString::fromLatin1(QTest::currentDataTag()));
        const QString file = m_directory.filePath(screenshot);
        const Run run = runShow({QStringLiteral("--remote"),
                                 remote.isEmpty() ? m_remote.path() : m_directory.filePath(remote),
                                 QStringLiteral("--clone"), clone, QStringLiteral("--installed"),
                                 m_directory.filePath(QStringLiteral("installed")), QStringLiteral("--screenshot"), file});
        QCOMPARE(run.status, status);
        if (errorContains.isEmpty())
            QVERIFY2(!run.standardError.contains(QStringLiteral("corvane")), qPrintable(run.standardError));
        else
            QVERIFY2(run.standardError.contains(errorContains), qPrintable(run.standardError));
        const QImage image(file);
        QCOMPARE(!image.isNull(), written);
        if (written)
            QVERIFY(image.width() >= 440 && image.height() >= 300);
    }

    void badUsage()
    {
        const Run run = runShow({QStringLiteral("--remote"), m_remote.path()});
        QCOMPARE(run.status, 2);
        QVERIFY(run.standardError.contains(QStringLiteral("usage: corvane show")));
    }

private:
    QTemporaryDir m_directory;
    GitRepositoryFixture m_remote{m_directory.filePath(QStringLiteral("remote"))};
};

QTEST_GUILESS_MAIN(ShowCommandTest)
#include "ShowCommandTest.moc"
