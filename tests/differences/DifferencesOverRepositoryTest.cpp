#include "GitRepositoryFixture.h"
#include "ThemeFiles.h"
#include "ThemeLists.h"

#include "Corvane/differences/FindThemeDifferences.h"
#include "Corvane/sources/LocalThemeFetcher.h"
#include "Corvane/sources/RemoteThemeFetcher.h"
#include "Corvane/themes/FileManager.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace corvane;
using namespace corvane::test;

namespace {

// The comparison as the window builds it, over a real clone and a real installed-themes directory.
std::shared_ptr<FindThemeDifferences> realFinder(const QUrl& remote, const QString& clone, const QString& installed)
{
    const auto reader = [] { return std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), FileManager::shared()); };
    return std::make_shared<FindThemeDifferences>(
        QUrl::fromLocalFile(installed),
        std::make_shared<RemoteThemeFetcher>(SynchronizedRepository(QUrl::fromLocalFile(clone), remote), reader()),
        std::make_shared<LocalThemeFetcher>(QUrl::fromLocalFile(installed), reader(), FileManager::shared()));
}

// The differences with the clone's and the installed directory's paths shortened for reading.
QStringList shortened(const QList<ThemeDifference>& differences, const QTemporaryDir& directory)
{
    QStringList lines;
    for (const ThemeDifference& difference : differences)
        lines.append(describe(difference)
                         .replace(QUrl::fromLocalFile(directory.filePath("clone/Themes/")).toString(), "R/")
                         .replace(QUrl::fromLocalFile(directory.filePath("installed/")).toString(), "I/"));
    return lines;
}

} // namespace

class DifferencesOverRepositoryTest : public QObject {
    Q_OBJECT

private slots:
    void comparesClonedAndInstalledThemes()
    {
        QTemporaryDir directory;
        GitRepositoryFixture remote(directory.filePath("remote"));
        writeTheme(remote.themesDirectory(), "solar-dark.theme.json", "Solar", "dark", {"Ann"}, "2.0.0");
        writeTheme(remote.themesDirectory(), "aurora.theme.json", "Aurora", "LIGHT", {}, "1.0");
        writeTheme(remote.themesDirectory(), "lunar.theme.json", "Lunar", "dark", {}, "1.0.0");
        remote.commitAll("Themes");
        writeTheme(directory.filePath("installed"), "mine.theme.json", "Solar", "dark", {"Old"}, "1.9.9");
        writeTheme(directory.filePath("installed"), "lunar.theme.json", "Lunar", "dark", {}, "1.0.0");

        const auto result =
            realFinder(remote.fileUrl(), directory.filePath("clone"), directory.filePath("installed"))->findDifferences();
        QVERIFY2(result, result ? "" : qPrintable(result.error().errorDescription()));
        QCOMPARE(shortened(*result, directory),
                 (QStringList{"new Aurora light 1.0.0 () R/aurora.theme.json -> I/aurora.theme.json",
                              "update Solar dark 1.9.9 -> 2.0.0 (Ann) R/solar-dark.theme.json -> I/mine.theme.json"}));
    }

    void aFailingRemoteLeavesTheInstalledSideUnread()
    {
        QTemporaryDir directory;
        const QString installed = directory.filePath("not-yet/installed");
        const auto result = realFinder(QUrl::fromLocalFile(directory.filePath("no-such-repository")),
                                       directory.filePath("clone"), installed)
                                ->findDifferences();
        QVERIFY(!result);
        QVERIFY(std::holds_alternative<ThemeDifferencesError::RemoteFetchingFailed>(result.error().reason()));
        QVERIFY2(result.error().errorDescription().startsWith(
                     "Computing theme differences failed: Remote theme fetching error: Repository error: "),
                 qPrintable(result.error().errorDescription()));
        // Reading the installed side would have created its directory.
        QVERIFY(!QFileInfo::exists(installed));
    }
};

QTEST_GUILESS_MAIN(DifferencesOverRepositoryTest)
#include "DifferencesOverRepositoryTest.moc"
