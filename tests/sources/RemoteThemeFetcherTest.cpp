#include "Corvane/sources/RemoteThemeFetcher.h"
#include "Corvane/sources/UntrustedThemeFiles.h"
#include "Corvane/themes/FileManager.h"

#include "ThemeFiles.h"
#include "ThemeRepositoryScene.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <sys/stat.h>

using namespace corvane;
using namespace corvane::test;

namespace {

RemoteThemeFetcher makeFetcher(const QUrl& clone, const QUrl& remote)
{
    return RemoteThemeFetcher(SynchronizedRepository(clone, remote),
                              std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), FileManager::shared()));
}

QString describe(const Result<QList<RemoteTheme>, RemoteThemeFetchingError>& result)
{
    return result ? QStringLiteral("%1 themes").arg(result->size()) : result.error().errorDescription();
}

QStringList namesOf(const QList<RemoteTheme>& themes)
{
    QStringList names;
    for (const RemoteTheme& theme : themes)
        names << theme.theme.theme.identifier.name();
    return names;
}

const QString decodingFailed = QStringLiteral("Remote theme fetching error: Theme decoding failed: ");

} // namespace

class RemoteThemeFetcherTest : public QObject {
    Q_OBJECT

private slots:
    void readsOnlyTheThemesDirectorySortedByName()
    {
        ThemeRepositoryScene scene;
        const QString themes = scene.remote().themesDirectory();
        writeTheme(themes, QStringLiteral("z.theme.json"), QStringLiteral("alpha"), QStringLiteral("dark"), {}, QStringLiteral("1"));
        writeTheme(themes, QStringLiteral("y.theme.json"), QStringLiteral("Alpha"), QStringLiteral("light"), {}, QStringLiteral("1"));
        writeTheme(QDir(themes).filePath(QStringLiteral("more")), QStringLiteral("deep.theme.json"), QStringLiteral("Deep"), QStringLiteral("dark"), {}, QStringLiteral("1"));
        writeTheme(scene.remote().path(), QStringLiteral("top.theme.json"), QStringLiteral("Top"), QStringLiteral("dark"), {}, QStringLiteral("1"));
        scene.remote().commitAll(QStringLiteral("More themes"));

        auto fetcher = makeFetcher(scene.cloneUrl(), scene.remoteUrl());
        const auto fetched = fetcher.fetchRemoteThemes();
        QVERIFY2(fetched, qPrintable(describe(fetched)));
        QCOMPARE(namesOf(*fetched), (QStringList{"Alpha", "Dusk", "alpha"}));
        for (const RemoteTheme& theme : *fetched)
            QCOMPARE(QFileInfo(theme.theme.url.toLocalFile()).path(), QDir(scene.clonePath()).filePath(QStringLiteral("Themes")));
    }

    // The repository is untrusted: links and special files among the theme files are refused before
    // anything is read, with a text naming the entry.
    void refusesUntrustedEntries_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QString>("entry"); // relative to the clone
        QTest::addColumn<bool>("isDirectory");

        QTest::newRow("committed link to /etc/passwd") << "committed file link" << "Themes/evil.theme.json" << false;
        QTest::newRow("committed link to a directory outside") << "committed directory link" << "Themes/outside.theme.json" << false;
        QTest::newRow("committed Themes that is a link") << "committed Themes link" << "Themes" << true;
        QTest::newRow("link in a clone that git itself made") << "git-made clone" << "Themes/evil.theme.json" << false;
        QTest::newRow("link placed into the clone") << "placed link" << "Themes/placed.theme.json" << false;
        QTest::newRow("dangling link placed into the clone") << "dangling link" << "Themes/gone.theme.json" << false;
        QTest::newRow("FIFO placed into the clone") << "fifo" << "Themes/pipe.theme.json" << false;
    }

    void refusesUntrustedEntries()
    {
        QFETCH(QString, situation);
        QFETCH(QString, entry);
        QFETCH(bool, isDirectory);

        ThemeRepositoryScene scene;
        const QString remoteThemes = scene.remote().themesDirectory();
        const QString outside = QDir(scene.root()).filePath(QStringLiteral("outside"));
        writeTheme(outside, QStringLiteral("Secret.theme.json"), QStringLiteral("Secret"), QStringLiteral("dark"), {}, QStringLiteral("1"));

        if (situation == u"committed file link" || situation == u"git-made clone") {
            QVERIFY(QFile::link(QStringLiteral("/etc/passwd"), QDir(remoteThemes).filePath(QStringLiteral("evil.theme.json"))));
        } else if (situation == u"committed directory link") {
            QVERIFY(QFile::link(outside, QDir(remoteThemes).filePath(QStringLiteral("outside.theme.json"))));
        } else if (situation == u"committed Themes link") {
            QVERIFY(QDir(remoteThemes).removeRecursively());
            QVERIFY(QFile::link(outside, remoteThemes));
        }
        scene.remote().commitAll(QStringLiteral("Untrusted content"));
        if (situation == u"git-made clone")
            runGit(scene.root(), {QStringLiteral("clone"), QStringLiteral("--quiet"), scene.remote().path(), scene.clonePath()});

        auto fetcher = makeFetcher(scene.cloneUrl(), scene.remoteUrl());
        if (situation == u"placed link" || situation == u"dangling link" || situation == u"fifo") {
            QVERIFY(fetcher.fetchRemoteThemes());
            const QString path = QDir(scene.clonePath()).filePath(entry);
            if (situation == u"placed link")
                QVERIFY(QFile::link(QDir(outside).filePath(QStringLiteral("Secret.theme.json")), path));
            else if (situation == u"dangling link")
                QVERIFY(QFile::link(QDir(scene.root()).filePath(QStringLiteral("gone")), path));
            else
                QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        }

        const auto fetched = fetcher.fetchRemoteThemes();
        QVERIFY2(!fetched, qPrintable(describe(fetched)));
        QVERIFY(std::holds_alternative<RemoteThemeFetchingError::ThemeDecodingFailed>(fetched.error().reason()));
        const QString path = QDir(scene.clonePath()).filePath(entry);
        const QString text = situation == u"fifo"       ? UntrustedThemeFiles::irregularFileText(path)
                             : isDirectory             ? UntrustedThemeFiles::linkedDirectoryText(path)
                                                       : UntrustedThemeFiles::linkedFileText(path);
        QCOMPARE(fetched.error().errorDescription(), decodingFailed + text);
        QVERIFY(text.contains(path) && text.contains(u"symbolic link") == (situation != u"fifo"));

        // The module's own clones never check a committed link out as a link.
        if (situation.startsWith(u"committed"))
            QVERIFY(!QFileInfo(path).isSymLink());
    }

    void readsFiftyThousandThemes()
    {
        constexpr int count = 50'000;
        ThemeRepositoryScene scene;
        const QString themes = scene.remote().themesDirectory();
        QStringList expected{QStringLiteral("Dusk")};
        QDir().mkpath(themes);
        // File names in another order than the theme names, so the order comes from the sorting.
        for (int index = 0; index < count; ++index) {
            const QString name = QStringLiteral("Theme %1").arg(index, 5, 10, QLatin1Char('0'));
            QFile file(QDir(themes).filePath(QStringLiteral("%1.theme.json").arg((index * 7919) % count)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(themeJson(name, index % 2 ? QStringLiteral("light") : QStringLiteral("dark"), {QStringLiteral("Ada")}, QStringLiteral("1.0.0")));
            expected << name;
        }
        scene.remote().commitAll(QStringLiteral("Many themes"));

        auto fetcher = makeFetcher(scene.cloneUrl(), scene.remoteUrl());
        const auto fetched = fetcher.fetchRemoteThemes();
        QVERIFY2(fetched, qPrintable(describe(fetched)));
        QCOMPARE(fetched->size(), count + 1);
        QCOMPARE(namesOf(*fetched), expected);
    }

    void namesWithNewlinesAndPercentSigns()
    {
        ThemeRepositoryScene scene;
        const QString themes = scene.remote().themesDirectory();
        writeTheme(themes, QStringLiteral("two\nlines.theme.json"), QStringLiteral("Two\nLines %@"), QStringLiteral("dark"), {}, QStringLiteral("1"));
        scene.remote().commitAll(QStringLiteral("Odd names"));
        auto fetcher = makeFetcher(scene.cloneUrl(), scene.remoteUrl());
        const auto fetched = fetcher.fetchRemoteThemes();
        QVERIFY2(fetched, qPrintable(describe(fetched)));
        QCOMPARE(namesOf(*fetched), (QStringList{"Dusk", "Two\nLines %@"}));

        const QString broken = QStringLiteral("100% %@ %1\nbroken.theme.json");
        writeFile(themes, broken, "{ not json");
        scene.remote().commitAll(QStringLiteral("Broken theme"));
        const auto failed = fetcher.fetchRemoteThemes();
        QVERIFY(!failed);
        const QString path = QDir(scene.clonePath()).filePath(QStringLiteral("Themes/") + broken);
        QVERIFY2(failed.error().errorDescription().startsWith(
                     decodingFailed + QStringLiteral("Could not decode JSON, decoding JSON from '%1' failed: ").arg(path)),
                 qPrintable(failed.error().errorDescription()));
    }

    void cloneWithoutThemesDirectory()
    {
        ThemeRepositoryScene scene;
        QVERIFY(QDir(scene.remote().themesDirectory()).removeRecursively());
        scene.remote().commitAll(QStringLiteral("No themes"));
        auto fetcher = makeFetcher(scene.cloneUrl(), scene.remoteUrl());
        const auto fetched = fetcher.fetchRemoteThemes();
        QVERIFY(!fetched);
        QCOMPARE(fetched.error().errorDescription(),
                 decodingFailed + QStringLiteral("File at %1 appears not to be a directory.")
                                      .arg(QUrl::fromLocalFile(QDir(scene.clonePath()).filePath(QStringLiteral("Themes"))).toString()));
    }

    // No offline fallback: the themes of the old clone are not offered when the remote is gone.
    void unreachableRemoteIsARepositoryError()
    {
        ThemeRepositoryScene scene;
        auto fetcher = makeFetcher(scene.cloneUrl(), scene.remoteUrl());
        QVERIFY(fetcher.fetchRemoteThemes());
        scene.takeRemoteAway();
        const auto fetched = fetcher.fetchRemoteThemes();
        QVERIFY(!fetched);
        const auto* repositoryError = std::get_if<RemoteThemeFetchingError::RepositoryError>(&fetched.error().reason());
        QVERIFY(repositoryError);
        QCOMPARE(fetched.error().errorDescription(),
                 QStringLiteral("Remote theme fetching error: Repository error: ") + repositoryError->error.message());
    }
};

QTEST_GUILESS_MAIN(RemoteThemeFetcherTest)
#include "RemoteThemeFetcherTest.moc"
