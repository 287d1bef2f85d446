// The event handler with the real file manager and a Trash of its own; its alerts are the real modal
// dialogs, answered from the test.
#include "Corvane/module/TextError.h"
#include "Corvane/presentation/ThemeEntryEventHandler.h"
#include "Corvane/themes/FileManager.h"

#include "AlertAnswerer.h"
#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace corvane;
using namespace corvane::test;
using Answer = AlertAnswerer::Answer;

namespace {

// Counts the comparisons the presenter starts: each refresh asks for one.
class CountingFinder final : public FindsThemeDifferences {
public:
    void findDifferences(std::function<void(ThemeDifferencesResult)>) override { ++requests; }
    int requests = 0;
};

class SilentView final : public ShowsThemeUpdates {
public:
    void showThemeEntries(const ThemeListState&) override {}
};

// Moves to the Trash like the shared file manager, except for the items it is told to refuse.
class RefusingDeleter final : public DeletesFiles {
public:
    explicit RefusingDeleter(QStringList refused) : refused(std::move(refused)) {}
    Result<void, AnyError> deleteItem(const QUrl& url) const override
    {
        attempts << QFileInfo(url.toLocalFile()).fileName();
        if (refused.contains(QFileInfo(url.toLocalFile()).fileName()))
            return std::unexpected(AnyError(TextError{QStringLiteral("refused")}));
        return FileManager::shared()->deleteItem(url);
    }
    QStringList refused;
    mutable QStringList attempts;
};

// Catches what would open in the desktop's file browser.
class OpenedUrls : public QObject {
    Q_OBJECT
public:
    OpenedUrls() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~OpenedUrls() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    QList<QUrl> urls;
public slots:
    void open(const QUrl& url) { urls << url; }
};

struct Directories {
    QTemporaryDir root;
    QString clone = root.filePath(QStringLiteral("clone"));
    QString themes = root.filePath(QStringLiteral("clone/Themes"));
    QString installed = root.filePath(QStringLiteral("installed"));

    Directories()
    {
        for (const char* name : {"a", "b", "c"})
            writeTheme(themes, QStringLiteral("%1.theme.json").arg(QLatin1StringView(name)), QString::fromLatin1(name),
                       QStringLiteral("dark"), {}, QStringLiteral("2.0.0"));
        QDir().mkpath(installed);
    }
    Configuration configuration() const
    {
        return Configuration(QUrl(QStringLiteral("git://127.0.0.1/themes")), QUrl::fromLocalFile(clone),
                             QUrl::fromLocalFile(installed));
    }
    CopyCommand command(const QString& file) const
    {
        return CopyCommand{QUrl::fromLocalFile(QDir(themes).filePath(file)),
                           QUrl::fromLocalFile(QDir(installed).filePath(file))};
    }
    QString installedFile(const QString& file) const { return QDir(installed).filePath(file); }
};

struct Handler {
    std::shared_ptr<CountingFinder> finder = std::make_shared<CountingFinder>();
    std::shared_ptr<ThemeEntryPresenter> presenter =
        std::make_shared<ThemeEntryPresenter>(finder, std::make_shared<SilentView>());
    ThemeEntryEventHandler handler;

    explicit Handler(const Directories& directories, std::shared_ptr<const DeletesFiles> deleter = nullptr)
        : handler(directories.configuration(), presenter, FileManager::shared(), std::move(deleter))
    {
    }
};

} // namespace

class ThemeEntryEventHandlerTest : public QObject {
    Q_OBJECT

private slots:
    void anEmptyBatchOnlyRefreshes()
    {
        Directories directories;
        Handler handler(directories);
        handler.handler.installThemes({});
        QCOMPARE(handler.finder->requests, 1);
        QCOMPARE(QDir(directories.installed).entryList(QDir::Files), QStringList{});
    }

    void aBatchInstallsInOrderThenRefreshesOnce()
    {
        TrashSandbox trash;
        Directories directories;
        writeFile(directories.installed, QStringLiteral("b.theme.json"), "old b");
        Handler handler(directories);
        handler.handler.installThemes({directories.command(QStringLiteral("a.theme.json")),
                                       directories.command(QStringLiteral("b.theme.json"))});
        QCOMPARE(handler.finder->requests, 1);
        QCOMPARE(QDir(directories.installed).entryList(QDir::Files),
                 QStringList({QStringLiteral("a.theme.json"), QStringLiteral("b.theme.json")}));
        // The replaced file went to the Trash, not away for good.
        QCOMPARE(trash.trashedNames(), QStringList{QStringLiteral("b.theme.json")});
        QCOMPARE(readFile(QDir(trash.filesDirectory()).filePath(QStringLiteral("b.theme.json"))), QByteArray("old b"));
    }

    void theFirstFailedCopyStopsTheBatch_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<bool>("resets");
        QTest::newRow("Continue") << Answer::first << false;
        QTest::newRow("Delete Local Themes") << Answer::second << true;
        QTest::newRow("Escape counts as the second button") << Answer::escape << true;
        QTest::newRow("closing counts as the second button") << Answer::close << true;
    }

    void theFirstFailedCopyStopsTheBatch()
    {
        QFETCH(Answer, answer);
        QFETCH(bool, resets);
        TrashSandbox trash;
        Directories directories;
        QVERIFY(QFile::remove(QDir(directories.themes).filePath(QStringLiteral("b.theme.json"))));
        Handler handler(directories);
        AlertAnswerer alerts({answer});

        handler.handler.installThemes({directories.command(QStringLiteral("a.theme.json")),
                                       directories.command(QStringLiteral("b.theme.json")),
                                       directories.command(QStringLiteral("c.theme.json"))});

        QCOMPARE(alerts.seen().size(), 1);
        QVERIFY(alerts.seen().first().message.contains(QStringLiteral("'b.theme.json'")));
        QCOMPARE(alerts.unexpected(), 0);
        QCOMPARE(handler.finder->requests, 0); // never a refresh after a failure
        QVERIFY(!QFileInfo::exists(directories.installedFile(QStringLiteral("c.theme.json"))));
        if (resets) {
            QCOMPARE(trash.trashedNames(), QStringList({QStringLiteral("clone"), QStringLiteral("installed")}));
            // The copy made before the failure went to the Trash with its directory.
            QVERIFY(QFileInfo::exists(QDir(trash.filesDirectory()).filePath(QStringLiteral("installed/a.theme.json"))));
        } else {
            QCOMPARE(trash.trashedNames(), QStringList{});
            QVERIFY(QFileInfo::exists(directories.installedFile(QStringLiteral("a.theme.json"))));
        }
    }

    void failedDeletionsEachShowTheirAlert_data()
    {
        QTest::addColumn<QStringList>("refused");
        QTest::addColumn<QStringList>("titles");
        QTest::addColumn<QStringList>("trashed");
        const QString title = QStringLiteral("Deleting Local Theme Repository Failed");
        QTest::newRow("clone refused, installed themes still go")
            << QStringList{QStringLiteral("clone")} << QStringList{title} << QStringList{QStringLiteral("installed")};
        QTest::newRow("installed themes refused")
            << QStringList{QStringLiteral("installed")} << QStringList{title} << QStringList{QStringLiteral("clone")};
        QTest::newRow("both refused: two alerts, the clone's first")
            << QStringList{QStringLiteral("clone"), QStringLiteral("installed")} << QStringList{title, title}
            << QStringList{};
    }

    void failedDeletionsEachShowTheirAlert()
    {
        QFETCH(QStringList, refused);
        QFETCH(QStringList, titles);
        QFETCH(QStringList, trashed);
        TrashSandbox trash;
        Directories directories;
        auto deleter = std::make_shared<RefusingDeleter>(refused);
        Handler handler(directories, deleter);
        OpenedUrls opened;
        AlertAnswerer alerts({Answer::second, Answer::first});

        handler.handler.resetLocalThemeDirectories().reset();

        QCOMPARE(deleter->attempts, QStringList({QStringLiteral("clone"), QStringLiteral("installed")}));
        QCOMPARE(trash.trashedNames(), trashed);
        QStringList seenTitles;
        for (const auto& alert : alerts.seen()) {
            seenTitles << alert.title;
            QCOMPARE(alert.buttons, QStringList({QStringLiteral("Ignore"), QStringLiteral("Show Directory")}));
            QVERIFY(alert.detail.isEmpty());
        }
        QCOMPARE(seenTitles, titles);
        QCOMPARE(alerts.seen().first().message,
                 refused.first() == QStringLiteral("clone")
                     ? QStringLiteral("Deleting the local copy of available themes failed. You can try to remove the "
                                      "directory manually and try again.")
                     : QStringLiteral("Removing installed themes failed. You can try to remove the directory manually "
                                      "and try again."));
        // "Show Directory" on the first alert opened the directory it named; "Ignore" on the second did nothing.
        const QString firstRefused = refused.first() == QStringLiteral("clone") ? directories.clone : directories.installed;
        QCOMPARE(opened.urls, QList<QUrl>{QUrl::fromLocalFile(firstRefused)});
        QCOMPARE(handler.finder->requests, 0);
    }

    void theResetObjectIsMadeOnceAndKept()
    {
        Directories directories;
        Handler handler(directories, std::make_shared<RefusingDeleter>(QStringList{QStringLiteral("clone"),
                                                                                   QStringLiteral("installed")}));
        ResetLocalThemeDirectories& first = handler.handler.resetLocalThemeDirectories();
        QStringList failures;
        first.handleDeletingLocalThemeRepoError = [&](const QUrl& url) { failures << url.toLocalFile(); };
        first.handleDeletingInstalledThemesError = [&](const QUrl& url) { failures << url.toLocalFile(); };
        first.reset();
        QCOMPARE(&handler.handler.resetLocalThemeDirectories(), &first);
        handler.handler.resetLocalThemeDirectories().reset();
        QCOMPARE(failures, QStringList({directories.clone, directories.installed, directories.clone,
                                        directories.installed}));
    }

    void refreshAndOpenThemeDirectory()
    {
        Directories directories;
        Handler handler(directories);
        OpenedUrls opened;
        handler.handler.refreshThemes();
        QCOMPARE(handler.finder->requests, 1);
        handler.handler.openThemeDirectory();
        QCOMPARE(opened.urls, QList<QUrl>{QUrl::fromLocalFile(directories.installed)});
        QCOMPARE(handler.finder->requests, 1);
    }
};

QTEST_MAIN(ThemeEntryEventHandlerTest)
#include "ThemeEntryEventHandlerTest.moc"
