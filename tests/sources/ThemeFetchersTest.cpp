// SPDX-License-Identifier: MIT
#include "Corvane/sources/RemoteThemeFetcher.h"
#include "Corvane/sources/UntrustedThemeFiles.h"
#include "Corvane/themes/FileManager.h"

#include "ThemeRepositoryScene.h"

#include <QTest>

#include <sys/stat.h>

using namespace corvane;
using namespace corvane::test;

namespace {

RemoteThemeFetcher fetcherFor(const ThemeRepositoryScene& scene)
{
    return RemoteThemeFetcher(SynchronizedRepository(scene.cloneUrl(), scene.remoteUrl()),
                              std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), FileManager::shared()));
}

// The names of the themes read, a name marked with "?" when its file lies elsewhere than in directory.
QStringList namesOf(const QList<RemoteTheme>& themes, const QString& directory)
{
    QStringList names;
    for (const RemoteTheme& theme : themes)
        names << theme.theme.theme.identifier.name() + (QFileInfo(theme.theme.path).path() == directory ? "" : "?");
    return names;
}

} // namespace

class ThemeFetchersTest : public QObject {
    Q_OBJECT

private slots:
    void readsTheClonesThemes_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("failure"); // else the start of the text; THEMES: the clone's "Themes"

        QTest::newRow("only Themes itself, sorted by name, names with newlines and percent signs")
            << "sorted" << QStringList{"Alpha", "Dusk", "Two\nLines %@ 100%", "alpha"} << QString();
        QTest::newRow("broken file named with a newline and percent signs") << "broken" << QStringList()
            << "Theme decoding failed: Could not decode JSON, decoding JSON from 'THEMES/100% %@ %1\nbroken.theme.json' failed: ";
        QTest::newRow("remote gone: the old clone is not offered") << "remote gone" << QStringList() << "Repository error: ";
    }

    void readsTheClonesThemes()
    {
        QFETCH(QString, situation);
        QFETCH(QStringList, names);
        QFETCH(QString, failure);
        ThemeRepositoryScene scene;
        const QString themes = scene.remote.themesDirectory();
        if (situation == "sorted") {
            writeTheme(themes, "z.theme.json", "alpha", "dark", {}, "1");
            writeTheme(themes, "y.theme.json", "Alpha", "light", {}, "1");
            writeTheme(themes + "/more", "deep.theme.json", "Deep", "dark", {}, "1");
            writeTheme(scene.remote.path(), "top.theme.json", "Top", "dark", {}, "1");
            writeTheme(themes, "two\nlines.theme.json", "Two\nLines %@ 100%", "dark", {}, "1");
        } else if (situation == "broken") {
            writeFile(themes, "100% %@ %1\nbroken.theme.json", "{ not json");
        }
        scene.remote.commitAll("Themes");

        RemoteThemeFetcher fetcher = fetcherFor(scene);
        if (situation == "remote gone") {
            QVERIFY(fetcher.fetchRemoteThemes());
            scene.moveRemote(true);
        }
        const auto fetched = fetcher.fetchRemoteThemes();
        const QString cloneThemes = scene.clonePath() + "/Themes";
        if (!failure.isEmpty()) {
            QVERIFY(!fetched);
            const QString text = fetched.error().errorDescription();
            QVERIFY2(text.startsWith("Remote theme fetching error: " + failure.replace("THEMES", cloneThemes)), qPrintable(text));
            return;
        }
        QVERIFY2(fetched, qPrintable(fetched ? QString() : fetched.error().errorDescription()));
        QCOMPARE(namesOf(*fetched, cloneThemes), names);
    }

    // The repository is untrusted: links and FIFOs among the theme files fail the fetch with a
    // text naming the entry.
    void refusesLinksAndFifos_data()
    {
        QTest::addColumn<bool>("committed"); // or placed into a good clone
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("target"); // OUTSIDE: a directory beside the clone; empty: a FIFO

        QTest::newRow("committed link to /etc/passwd") << true << "Themes/evil.theme.json" << "/etc/passwd";
        QTest::newRow("committed link to a directory outside") << true << "Themes/out.theme.json" << "OUTSIDE";
        QTest::newRow("committed Themes that is a link") << true << "Themes" << "OUTSIDE";
        QTest::newRow("link placed into the clone") << false << "Themes/placed.theme.json" << "OUTSIDE/Secret.theme.json";
        QTest::newRow("FIFO placed into the clone") << false << "Themes/pipe.theme.json" << "";
    }

    void refusesLinksAndFifos()
    {
        QFETCH(bool, committed);
        QFETCH(QString, entry);
        QFETCH(QString, target);
        ThemeRepositoryScene scene;
        writeTheme(scene.root.filePath("OUTSIDE"), "Secret.theme.json", "Secret", "dark", {}, "1");
        target.replace("OUTSIDE", scene.root.filePath("OUTSIDE"));
        if (committed) {
            if (entry == "Themes")
                QVERIFY(QDir(scene.remote.themesDirectory()).removeRecursively());
            QVERIFY(QFile::link(target, scene.remote.path() + "/" + entry));
            scene.remote.commitAll("Untrusted content");
        }
        RemoteThemeFetcher fetcher = fetcherFor(scene);
        const QString path = scene.clonePath() + "/" + entry;
        if (!committed) {
            QVERIFY(fetcher.fetchRemoteThemes());
            QVERIFY(target.isEmpty() ? ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0 : QFile::link(target, path));
        }

        const auto fetched = fetcher.fetchRemoteThemes();
        QVERIFY(!fetched);
        const QString text = target.isEmpty() ? UntrustedThemeFiles::irregularFileText(path)
            : entry == "Themes"               ? UntrustedThemeFiles::linkedDirectoryText(path)
                                              : UntrustedThemeFiles::linkedFileText(path);
        QVERIFY(text.contains(path));
        QCOMPARE(fetched.error().errorDescription(), "Remote theme fetching error: Theme decoding failed: " + text);
        if (committed) // the module's own clones never check a committed link out as a link
            QVERIFY(!QFileInfo(path).isSymLink());
    }
};

QTEST_GUILESS_MAIN(ThemeFetchersTest)
#include "ThemeFetchersTest.moc"
