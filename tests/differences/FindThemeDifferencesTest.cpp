#include "ThemeLists.h"

#include "Corvane/differences/FindThemeDifferences.h"
#include "Corvane/module/TextError.h"

#include <QRandomGenerator>
#include <QTest>

using namespace corvane;
using namespace corvane::test;

namespace {

// Answers with a fixed result and counts how often it was asked: the one-operation interfaces let a
// test decide what each side yields without a repository.
class FixedRemoteThemes final : public FetchesRemoteThemes {
public:
    explicit FixedRemoteThemes(Result<QList<RemoteTheme>, RemoteThemeFetchingError> result) : m_result(std::move(result)) {}
    Result<QList<RemoteTheme>, RemoteThemeFetchingError> fetchRemoteThemes() override
    {
        ++calls;
        return m_result;
    }
    int calls = 0;

private:
    Result<QList<RemoteTheme>, RemoteThemeFetchingError> m_result;
};

class FixedLocalThemes final : public FetchesLocalThemes {
public:
    explicit FixedLocalThemes(Result<QList<LocalTheme>, LocalThemeFetchingError> result) : m_result(std::move(result)) {}
    Result<QList<LocalTheme>, LocalThemeFetchingError> fetchLocalThemes() override
    {
        ++calls;
        return m_result;
    }
    int calls = 0;

private:
    Result<QList<LocalTheme>, LocalThemeFetchingError> m_result;
};

FindThemeDifferences finderFor(const QString& directory = installedDirectory)
{
    return FindThemeDifferences(QUrl::fromLocalFile(directory), nullptr, nullptr);
}

const QString precomposed = QString::fromUtf8("Caf\u00e9 Cr\u00e8me");       // é and è as one letter each
const QString decomposed = QString::fromUtf8("Cafe\u0301 Cre\u0300me");      // letter plus combining mark

// The rule as written: for each remote theme, scan the installed list from its start for the first
// theme with the canonically equal name and the same style. Quadratic, and deliberately built without
// the identifier's own equality or hashing, so the two implementations share nothing.
QList<ThemeDifference> literalDifferences(const QUrl& installedDirectoryURL, const QList<RemoteTheme>& remote,
                                          const QList<LocalTheme>& installed)
{
    const auto firstMatch = [&](const Theme& theme) -> const LocalTheme* {
        const QString name = theme.identifier.name().normalized(QString::NormalizationForm_C);
        for (const LocalTheme& local : installed) {
            if (local.theme.theme.identifier.style() == theme.identifier.style()
                && local.theme.theme.identifier.name().normalized(QString::NormalizationForm_C) == name)
                return &local;
        }
        return nullptr;
    };
    QList<ThemeDifference> added;
    QList<ThemeDifference> updated;
    for (const RemoteTheme& theme : remote) {
        const StoredTheme& stored = theme.theme;
        const LocalTheme* match = firstMatch(stored.theme);
        if (!match) {
            const QUrl destination = QUrl::fromLocalFile(installedDirectoryURL.toLocalFile() + u'/' + stored.url.fileName());
            added.append(NewTheme(stored.theme.identifier.name(), stored.theme.identifier.style(), stored.theme.authors,
                                  stored.theme.version, CopyCommand{stored.url, destination}));
        } else if (match->theme.theme.version < stored.theme.version) {
            updated.append(UpdatedTheme(match->theme.theme.identifier, stored.theme.authors,
                                        {match->theme.theme.version, stored.theme.version},
                                        CopyCommand{stored.url, match->theme.url}));
        }
    }
    return added + updated;
}

} // namespace

class FindThemeDifferencesTest : public QObject {
    Q_OBJECT

private slots:
    void comparesThemeLists_data()
    {
        QTest::addColumn<QStringList>("remote");
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("nothing published, whatever is installed")
            << QStringList{} << QStringList{"solar.theme.json|Solar|dark|1.0.0"} << QStringList{};
        QTest::newRow("nothing installed: every theme new, in remote order, named like its file")
            << QStringList{"b.theme.json|Aurora|light|1.0.0|Ann", "a.theme.json|Borealis|dark|2.1.0|Bo,Cy"}
            << QStringList{}
            << QStringList{"new Aurora light 1.0.0 (Ann) R/b.theme.json -> I/b.theme.json",
                           "new Borealis dark 2.1.0 (Bo, Cy) R/a.theme.json -> I/a.theme.json"};
        QTest::newRow("same name in the other style is another theme")
            << QStringList{"solar.theme.json|Solar|dark|1.0.0"} << QStringList{"solar.theme.json|Solar|light|0.1.0"}
            << QStringList{"new Solar dark 1.0.0 () R/solar.theme.json -> I/solar.theme.json"};
        QTest::newRow("names differing in letter case do not match")
            << QStringList{"solar.theme.json|Solar|dark|2.0.0"} << QStringList{"solar.theme.json|solar|dark|1.0.0"}
            << QStringList{"new Solar dark 2.0.0 () R/solar.theme.json -> I/solar.theme.json"};
        QTest::newRow("composed and decomposed names match")
            << QStringList{"cafe.theme.json|" + precomposed + "|light|2.0.0"}
            << QStringList{"mine.theme.json|" + decomposed + "|light|1.0.0"}
            << QStringList{"update " + decomposed + " light 1.0.0 -> 2.0.0 () R/cafe.theme.json -> I/mine.theme.json"};
        QTest::newRow("equal version: nothing")
            << QStringList{"s.theme.json|Solar|dark|1.2.0"} << QStringList{"s.theme.json|Solar|dark|1.2.0"}
            << QStringList{};
        QTest::newRow("newer installed: no downgrade")
            << QStringList{"s.theme.json|Solar|dark|1.2.0"} << QStringList{"s.theme.json|Solar|dark|1.3.0"}
            << QStringList{};
        QTest::newRow("versions order by number, not by text")
            << QStringList{"s.theme.json|Solar|dark|1.10.0"} << QStringList{"s.theme.json|Solar|dark|1.2.0"}
            << QStringList{"update Solar dark 1.2.0 -> 1.10.0 () R/s.theme.json -> I/s.theme.json"};
        QTest::newRow("first installed duplicate is older: update it")
            << QStringList{"s.theme.json|Solar|dark|2.0.0"}
            << QStringList{"first.theme.json|Solar|dark|1.0.0", "second.theme.json|Solar|dark|3.0.0"}
            << QStringList{"update Solar dark 1.0.0 -> 2.0.0 () R/s.theme.json -> I/first.theme.json"};
        QTest::newRow("first installed duplicate is newer: the later older one is never looked at")
            << QStringList{"s.theme.json|Solar|dark|2.0.0"}
            << QStringList{"first.theme.json|Solar|dark|3.0.0", "second.theme.json|Solar|dark|1.0.0"}
            << QStringList{};
        QTest::newRow("first match is the first in canonical terms, however written")
            << QStringList{"c.theme.json|" + precomposed + "|dark|2.0.0"}
            << QStringList{"one.theme.json|" + decomposed + "|dark|1.0.0",
                           "two.theme.json|" + precomposed + "|dark|1.5.0"}
            << QStringList{"update " + decomposed + " dark 1.0.0 -> 2.0.0 () R/c.theme.json -> I/one.theme.json"};
        QTest::newRow("one identifier twice in the remote list, nothing installed")
            << QStringList{"solar-1.theme.json|Solar|dark|1.0.0", "solar-2.theme.json|Solar|dark|1.1.0"}
            << QStringList{}
            << QStringList{"new Solar dark 1.0.0 () R/solar-1.theme.json -> I/solar-1.theme.json",
                           "new Solar dark 1.1.0 () R/solar-2.theme.json -> I/solar-2.theme.json"};
        QTest::newRow("one identifier twice in the remote list, older installed")
            << QStringList{"solar-1.theme.json|Solar|dark|2.0.0", "solar-2.theme.json|Solar|dark|3.0.0"}
            << QStringList{"mine.theme.json|Solar|dark|1.0.0"}
            << QStringList{"update Solar dark 1.0.0 -> 2.0.0 () R/solar-1.theme.json -> I/mine.theme.json",
                           "update Solar dark 1.0.0 -> 3.0.0 () R/solar-2.theme.json -> I/mine.theme.json"};
        QTest::newRow("destination named after the remote file, not the theme")
            << QStringList{"solar-dark.theme.json|Solar|dark|1.0.0"} << QStringList{}
            << QStringList{"new Solar dark 1.0.0 () R/solar-dark.theme.json -> I/solar-dark.theme.json"};
        QTest::newRow("an installed file of that name holding another theme is not checked")
            << QStringList{"solar.theme.json|Solar|dark|1.0.0"} << QStringList{"solar.theme.json|Lunar|dark|1.0.0"}
            << QStringList{"new Solar dark 1.0.0 () R/solar.theme.json -> I/solar.theme.json"};
        QTest::newRow("new themes come before updates whatever the remote order")
            << QStringList{"a.theme.json|Aurora|dark|2.0.0", "b.theme.json|Borealis|dark|1.0.0",
                           "c.theme.json|Cirrus|dark|2.0.0", "d.theme.json|Dusk|dark|1.0.0"}
            << QStringList{"c.theme.json|Cirrus|dark|1.0.0", "a.theme.json|Aurora|dark|1.0.0"}
            << QStringList{"new Borealis dark 1.0.0 () R/b.theme.json -> I/b.theme.json",
                           "new Dusk dark 1.0.0 () R/d.theme.json -> I/d.theme.json",
                           "update Aurora dark 1.0.0 -> 2.0.0 () R/a.theme.json -> I/a.theme.json",
                           "update Cirrus dark 1.0.0 -> 2.0.0 () R/c.theme.json -> I/c.theme.json"};
        QTest::newRow("an update carries the remote authors and the installed name as written")
            << QStringList{"s.theme.json|" + precomposed + "|dark|2.0.0|New Author,Second"}
            << QStringList{"s.theme.json|" + decomposed + "|dark|1.0.0|Old Author"}
            << QStringList{"update " + decomposed + " dark 1.0.0 -> 2.0.0 (New Author, Second) R/s.theme.json -> I/s.theme.json"};
        QTest::newRow("file names with reserved URL characters keep their name")
            << QStringList{"50% grey #2 ?.theme.json|Grey|light|1.0.0",
                           QString::fromUtf8("\u00e9t\u00e9 [x].theme.json|Summer|light|1.0.0")}
            << QStringList{}
            << QStringList{"new Grey light 1.0.0 () R/50% grey #2 ?.theme.json -> I/50% grey #2 ?.theme.json",
                           QString::fromUtf8("new Summer light 1.0.0 () R/\u00e9t\u00e9 [x].theme.json -> I/\u00e9t\u00e9 [x].theme.json")};
        QTest::newRow("file names that look percent-encoded are taken literally")
            << QStringList{"a%41%2Fb%.theme.json|Grey|light|1.0.0", "x;y,z+w=v&u@t$.theme.json|Blue|dark|1.0.0"}
            << QStringList{}
            << QStringList{"new Grey light 1.0.0 () R/a%41%2Fb%.theme.json -> I/a%41%2Fb%.theme.json",
                           "new Blue dark 1.0.0 () R/x;y,z+w=v&u@t$.theme.json -> I/x;y,z+w=v&u@t$.theme.json"};
        QTest::newRow("empty name is a name like any other")
            << QStringList{"e.theme.json||dark|2.0.0", "f.theme.json||light|1.0.0"}
            << QStringList{"e.theme.json||dark|1.0.0"}
            << QStringList{"new  light 1.0.0 () R/f.theme.json -> I/f.theme.json",
                           "update  dark 1.0.0 -> 2.0.0 () R/e.theme.json -> I/e.theme.json"};
    }

    void comparesThemeLists()
    {
        QFETCH(QStringList, remote);
        QFETCH(QStringList, installed);
        QFETCH(QStringList, expected);

        const FindThemeDifferences finder = finderFor();
        const QList<ThemeDifference> found = finder.differences(remoteThemes(remote), localThemes(installed));
        QCOMPARE(describe(found), expected);

        // The two steps give the two groups of the whole, each in the same order.
        QList<ThemeDifference> steps;
        for (NewTheme& added : finder.findNewThemes(remoteThemes(remote), localThemes(installed)))
            steps.append(std::move(added));
        for (UpdatedTheme& updated : finder.findUpdatedThemes(remoteThemes(remote), localThemes(installed)))
            steps.append(std::move(updated));
        QCOMPARE(describe(steps), expected);
    }

    void destinationsFollowTheDirectoryAsGiven_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::newRow("plain") << installedDirectory;
        QTest::newRow("trailing slash") << installedDirectory + u'/';
    }

    void destinationsFollowTheDirectoryAsGiven()
    {
        QFETCH(QString, directory);
        const auto found = finderFor(directory).findNewThemes(remoteThemes({"solar.theme.json|Solar|dark|1.0.0"}), {});
        QCOMPARE(found.size(), 1);
        QCOMPARE(found[0].copyCommand.destinationURL, QUrl::fromLocalFile(installedDirectory + QStringLiteral("/solar.theme.json")));
    }

    // Generated lists full of near-misses: duplicates on both sides, names that differ only in case
    // or only in Unicode composition, both styles, equal and crossing versions. The indexed comparison
    // must give exactly the rows the literal scan gives.
    void agreesWithTheLiteralScan_data()
    {
        QTest::addColumn<quint32>("start");
        QTest::addColumn<int>("remoteCount");
        QTest::addColumn<int>("installedCount");
        for (quint32 start = 1; start <= 40; ++start) {
            const int remoteCount = int(start * 7 % 61);
            const int installedCount = int(start * 13 % 53);
            QTest::addRow("lists %u (%d remote, %d installed)", start, remoteCount, installedCount)
                << start << remoteCount << installedCount;
        }
        QTest::newRow("large lists") << quint32(99) << 1500 << 1200;
    }

    void agreesWithTheLiteralScan()
    {
        QFETCH(quint32, start);
        QFETCH(int, remoteCount);
        QFETCH(int, installedCount);

        QRandomGenerator random(start);
        const QStringList names{
            QStringLiteral("Solar"), QStringLiteral("solar"), QStringLiteral("SOLAR"), precomposed, decomposed,
            precomposed.toLower(), QString::fromUtf8("A\u030angstro\u0308m"), QString::fromUtf8("\u00c5ngstr\u00f6m"),
            QString::fromUtf8("\u212bngstr\u00f6m"), // the Ångström sign, canonically the same letter Å
            QStringLiteral("Nord"), QString(), QString::fromUtf8("\u1100\u1161"), QString::fromUtf8("\uac00")};
        const QStringList fileNames{QStringLiteral("a.theme.json"), QStringLiteral("b.theme.json"),
                                    QStringLiteral("50% #c.theme.json"), QString::fromUtf8("\u00e9.theme.json"),
                                    QStringLiteral("%41%2F?.theme.json")};
        const auto theme = [&](int index) {
            const int extra = int(random.bounded(50));
            const QString fileName = extra < 10 ? fileNames[extra % fileNames.size()]
                                                : QStringLiteral("t%1-%2.theme.json").arg(index).arg(extra);
            const QString style = random.bounded(2) ? QStringLiteral("dark") : QStringLiteral("light");
            const QString version = QStringLiteral("%1.%2.0").arg(random.bounded(3)).arg(random.bounded(3));
            const QString authors = QStringLiteral("A%1").arg(random.bounded(3));
            return QStringList{fileName, names[random.bounded(names.size())], style, version, authors}.join(u'|');
        };
        QStringList remote;
        for (int i = 0; i < remoteCount; ++i)
            remote.append(theme(i));
        QStringList installed;
        for (int i = 0; i < installedCount; ++i)
            installed.append(theme(i));

        const FindThemeDifferences finder = finderFor();
        const QList<ThemeDifference> expected = literalDifferences(
            finder.installedThemesDirectoryURL(), remoteThemes(remote), localThemes(installed));
        const QList<ThemeDifference> found = finder.differences(remoteThemes(remote), localThemes(installed));
        QCOMPARE(describe(found), describe(expected));
        QVERIFY(found == expected); // every field, the URLs as values
    }

    void findsDifferencesOfBothFetchers_data()
    {
        QTest::addColumn<bool>("remoteFails");
        QTest::addColumn<bool>("localFails");
        QTest::addColumn<int>("expectedLocalCalls");
        QTest::addColumn<QString>("expected");

        QTest::newRow("both sides read")
            << false << false << 1 << "new Solar dark 2.0.0 () R/solar.theme.json -> I/solar.theme.json";
        QTest::newRow("remote fails: installed themes never read")
            << true << false << 0
            << "Computing theme differences failed: Remote theme fetching error: Repository error: could not resolve host";
        QTest::newRow("remote fails while the installed side would fail too")
            << true << true << 0
            << "Computing theme differences failed: Remote theme fetching error: Repository error: could not resolve host";
        QTest::newRow("installed side fails")
            << false << true << 1
            << "Computing theme differences failed: Local theme fetching error: File error: a file stands there";
    }

    void findsDifferencesOfBothFetchers()
    {
        QFETCH(bool, remoteFails);
        QFETCH(bool, localFails);
        QFETCH(int, expectedLocalCalls);
        QFETCH(QString, expected);

        auto remote = std::make_shared<FixedRemoteThemes>(
            remoteFails ? Result<QList<RemoteTheme>, RemoteThemeFetchingError>(std::unexpected(RemoteThemeFetchingError(
                              RemoteThemeFetchingError::RepositoryError{GitError(-1, 12, "could not resolve host")})))
                        : remoteThemes({"solar.theme.json|Solar|dark|2.0.0"}));
        auto local = std::make_shared<FixedLocalThemes>(
            localFails ? Result<QList<LocalTheme>, LocalThemeFetchingError>(std::unexpected(LocalThemeFetchingError(
                             LocalThemeFetchingError::FileError{TextError{"a file stands there"}})))
                       : localThemes({"lunar.theme.json|Lunar|dark|1.0.0"}));
        const FindThemeDifferences finder(QUrl::fromLocalFile(installedDirectory), remote, local);

        const auto result = finder.findDifferences();
        QCOMPARE(remote->calls, 1);
        QCOMPARE(local->calls, expectedLocalCalls);
        if (result)
            QCOMPARE(describe(*result), QStringList{expected});
        else
            QCOMPARE(result.error().errorDescription(), expected);
        QCOMPARE(bool(result), !remoteFails && !localFails);
        if (!result) {
            const bool remoteCase = std::holds_alternative<ThemeDifferencesError::RemoteFetchingFailed>(result.error().reason());
            QCOMPARE(remoteCase, remoteFails);
        }
    }
};

QTEST_GUILESS_MAIN(FindThemeDifferencesTest)
#include "FindThemeDifferencesTest.moc"
