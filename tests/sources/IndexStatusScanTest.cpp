// SPDX-License-Identifier: MIT
#include "Corvane/sources/IndexStatusScan.h"
#include "GitRepositoryFixture.h"
#include "ThemeFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace corvane;
using namespace corvane::test;

namespace {

// The entries as `git ls-files --stage` prints them: mode, id, stage, path.
QStringList listed(const IndexStatusScan::Outcome& outcome)
{
    QStringList lines;
    for (const IndexStatusScan::Entry& entry : outcome.entries) {
        const QByteArray id = QByteArray(reinterpret_cast<const char*>(entry.id), 20).toHex();
        lines << QStringLiteral("%1 %2 %3\t%4")
                     .arg(QString::number(entry.recorded.mode, 8), QString::fromLatin1(id))
                     .arg(entry.stage)
                     .arg(QString::fromUtf8(entry.path));
    }
    return lines;
}

} // namespace

class IndexStatusScanTest : public QObject {
    Q_OBJECT

private slots:
    void readsTheIndexAsGitWroteIt_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<bool>("readable");
        QTest::addColumn<QStringList>("changed");
        QTest::newRow("version 2") << "version 2" << true << QStringList{};
        QTest::newRow("version 3: an entry with extended flags") << "version 3" << true << QStringList{};
        QTest::newRow("a long path") << "long path" << true << QStringList{};
        QTest::newRow("edited, removed, made executable")
            << "changed" << true
            << QStringList{"README.md", "Themes/Dawn.theme.json", "Themes/Dusk.theme.json"};
        QTest::newRow("version 4: left to libgit2") << "version 4" << false << QStringList{};
        QTest::newRow("cut short") << "cut short" << false << QStringList{};
        QTest::newRow("not a repository") << "no index" << false << QStringList{};
    }

    void readsTheIndexAsGitWroteIt()
    {
        QFETCH(QString, layout);
        QFETCH(bool, readable);
        QFETCH(QStringList, changed);
        QTemporaryDir directory;
        const QString root = directory.path();
        GitRepositoryFixture repository(root + "/clone");
        const QString clone = repository.path();
        writeFile(clone, "README.md", "Curated themes\n");
        writeFile(repository.themesDirectory(), "Dawn.theme.json", "{}\n");
        writeFile(repository.themesDirectory(), "Dusk.theme.json", "{ }\n");
        if (layout == "long path") {
            const QString deep = repository.themesDirectory() + '/' + QString(200, 'x');
            QVERIFY(QDir().mkpath(deep));
            writeFile(deep, QString(200, 'y') + ".theme.json", "{}\n");
        }
        repository.commitAll("Themes");

        if (layout == "version 3")
            runGit(clone, {"update-index", "--skip-worktree", "README.md"});
        else if (layout == "version 4")
            runGit(clone, {"update-index", "--index-version", "4"});
        else if (layout == "no index")
            QVERIFY(QFile::remove(clone + "/.git/index"));
        const QString expected = runGit(clone, {"ls-files", "--stage"});
        if (layout == "cut short") {
            QFile index(clone + "/.git/index");
            QVERIFY(index.resize(index.size() / 2));
        } else if (layout == "changed") {
            writeFile(clone, "README.md", "Edited by hand\n");
            QVERIFY(QFile::remove(repository.themesDirectory() + "/Dawn.theme.json"));
            const QString dusk = repository.themesDirectory() + "/Dusk.theme.json";
            QVERIFY(QFile::setPermissions(dusk, QFile::permissions(dusk) | QFileDevice::ExeOwner));
        }

        IndexStatusScan scan(QFile::encodeName(clone));
        const IndexStatusScan::Outcome* outcome = scan.finish();
        QCOMPARE(outcome != nullptr, readable);
        if (!outcome)
            return;
        QCOMPARE(listed(*outcome), expected.trimmed().split('\n'));
        QStringList found;
        for (std::size_t position : outcome->changed)
            found << QString::fromUtf8(outcome->entries[position].path);
        found.sort();
        QCOMPARE(found, changed);
    }
};

QTEST_GUILESS_MAIN(IndexStatusScanTest)
#include "IndexStatusScanTest.moc"
