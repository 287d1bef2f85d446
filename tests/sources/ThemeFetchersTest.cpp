#include "Corvane/module/TextError.h"
#include "Corvane/sources/LocalThemeFetcher.h"
#include "Corvane/sources/RemoteThemeFetchingError.h"
#include "Corvane/themes/FileManager.h"

#include "ThemeFiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

using namespace corvane;

namespace {

// The shared file manager, counting the listings the reader asks for.
class CountingLister final : public DirectoryLister {
public:
    Result<QList<QUrl>, DirectoryListingError> filesInDirectory(const QUrl& directory) const override
    {
        ++listings;
        return FileManager::shared()->filesInDirectory(directory);
    }
    mutable std::atomic<int> listings{0};
};

} // namespace

class ThemeFetchersTest : public QObject {
    Q_OBJECT

private slots:
    void describesFailuresNested_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("expected");

        const auto remote = [](auto reason) { return RemoteThemeFetchingError(std::move(reason)).errorDescription(); };
        const auto local = [](auto reason) { return LocalThemeFetchingError(std::move(reason)).errorDescription(); };
        const TextError expected{QStringLiteral("Expected directoryURL")};

        QTest::newRow("remote: repository error")
            << remote(RemoteThemeFetchingError::RepositoryError{GitError(-1, 12, QStringLiteral("early EOF"))})
            << "Remote theme fetching error: Repository error: early EOF";
        QTest::newRow("remote: no working directory")
            << remote(RemoteThemeFetchingError::ThemeDecodingFailed{ThemeDecodingError{expected}})
            << "Remote theme fetching error: Theme decoding failed: Expected directoryURL";
        QTest::newRow("remote: placeholders in the git message stay as they are")
            << remote(RemoteThemeFetchingError::RepositoryError{GitError(-1, 0, QStringLiteral("ref '%@' 100% %1"))})
            << "Remote theme fetching error: Repository error: ref '%@' 100% %1";
        QTest::newRow("local: file error")
            << local(LocalThemeFetchingError::FileError{TextError{QStringLiteral("Permission denied")}})
            << "Local theme fetching error: File error: Permission denied";
        QTest::newRow("local: decoding error")
            << local(LocalThemeFetchingError::DecodingError{ThemeDecodingError{expected}})
            << "Local theme fetching error: Theme decoding failed: Expected directoryURL";
    }

    void describesFailuresNested()
    {
        QFETCH(QString, description);
        QFETCH(QString, expected);
        QCOMPARE(description, expected);
    }

    void fetchesInstalledThemes_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QStringList>("names");    // the result's theme names, in order
        QTest::addColumn<QString>("failurePrefix"); // instead, a failure whose text starts so
        QTest::addColumn<int>("listings");

        QTest::newRow("missing, with missing parents: created, empty") << "missing" << QStringList() << QString() << 1;
        QTest::newRow("empty directory") << "empty" << QStringList() << QString() << 1;
        QTest::newRow("themes sorted by name") << "themes" << QStringList{"Alpha", "alpha", "beta"} << QString() << 1;
        QTest::newRow("a file where the directory belongs: reader not called")
            << "file" << QStringList() << "Local theme fetching error: File error: " << 0;
        QTest::newRow("a broken theme")
            << "broken" << QStringList() << "Local theme fetching error: Theme decoding failed: Could not decode JSON, " << 1;
    }

    void fetchesInstalledThemes()
    {
        QFETCH(QString, situation);
        QFETCH(QStringList, names);
        QFETCH(QString, failurePrefix);
        QFETCH(int, listings);

        QTemporaryDir root;
        QString installed = root.filePath(QStringLiteral("Installed"));
        if (situation == u"missing") {
            installed = root.filePath(QStringLiteral("a/b/Installed"));
        } else if (situation == u"empty") {
            QDir().mkpath(installed);
        } else if (situation == u"themes") {
            test::writeTheme(installed, QStringLiteral("b.theme.json"), QStringLiteral("beta"), QStringLiteral("dark"), {}, QStringLiteral("1"));
            test::writeTheme(installed, QStringLiteral("a2.theme.json"), QStringLiteral("alpha"), QStringLiteral("dark"), {}, QStringLiteral("1"));
            test::writeTheme(installed, QStringLiteral("a1.theme.json"), QStringLiteral("Alpha"), QStringLiteral("light"), {}, QStringLiteral("1"));
            test::writeFile(installed, QStringLiteral("notes.txt"), "not a theme");
        } else if (situation == u"file") {
            test::writeFile(root.path(), QStringLiteral("Installed"), "a file");
        } else if (situation == u"broken") {
            test::writeFile(installed, QStringLiteral("broken.theme.json"), "{");
        }

        auto lister = std::make_shared<CountingLister>();
        LocalThemeFetcher fetcher(QUrl::fromLocalFile(installed),
                                  std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), lister),
                                  FileManager::shared());
        const auto themes = fetcher.fetchLocalThemes();

        QCOMPARE(lister->listings.load(), listings);
        if (!failurePrefix.isEmpty()) {
            QVERIFY(!themes);
            QVERIFY2(themes.error().errorDescription().startsWith(failurePrefix),
                     qPrintable(themes.error().errorDescription()));
            return;
        }
        QVERIFY2(themes, qPrintable(themes ? QString() : themes.error().errorDescription()));
        QVERIFY(QFileInfo(installed).isDir());
        QStringList found;
        for (const LocalTheme& theme : *themes) {
            found << theme.theme.theme.identifier.name();
            QCOMPARE(QFileInfo(theme.theme.url.toLocalFile()).path(), installed);
        }
        QCOMPARE(found, names);
    }
};

QTEST_GUILESS_MAIN(ThemeFetchersTest)
#include "ThemeFetchersTest.moc"
