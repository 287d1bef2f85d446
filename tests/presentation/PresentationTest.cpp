// SPDX-License-Identifier: MIT
// The presenter, the event handler and the four alerts: a finder the test answers, a view that records
// what it is shown, real files with a Trash of their own, and real modal alerts answered from the test.
#include "Corvane/module/TextError.h"
#include "Corvane/ui/Alerts.h"
#include "Corvane/ui/WindowAlerts.h"
#include "Corvane/presentation/ThemeEntryEventHandler.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/undo/InstallRecord.h"

#include "AlertAnswerer.h"
#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QDesktopServices>
#include <QDir>
#include <QTemporaryDir>
#include <QThread>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;
using Answer = AlertAnswerer::Answer;

namespace {

CopyCommand copyOf(const QString& name)
{
    return {"/clone/Themes/"_L1 + name, "/installed/"_L1 + name};
}

NewTheme newTheme(const QString& name) { return {name, Theme::Style::dark, {}, Version(1, 0, 0), copyOf(name)}; }

// The presenter's and handler's neighbours: holds comparisons until answered, logs each state shown ("loading",
// "no rows", "failure: ..." or a line of fields per row), trashes with the file manager but for the refused items.
struct Neighbours final : FindsThemeDifferences, ShowsThemeUpdates, DeletesFiles {
    QList<std::function<void(ThemeDifferencesResult)>> pending;
    QStringList log, refused;
    void findDifferences(std::function<void(ThemeDifferencesResult)> completion) override { pending << completion; }
    void answer(ThemeDifferencesResult result) { pending.takeFirst()(std::move(result)); }
    void showThemeEntries(const ThemeListState& state) override
    {
        if (!state || !*state || (*state)->isEmpty())
            log << (!state ? u"loading"_s : *state ? u"no rows"_s : "failure: "_L1 + state->error().errorDescription());
        for (const ThemeEntry& e : state && *state ? **state : QList<ThemeEntry>{})
            log << QStringList{e.name, e.style, e.authors, e.installedVersion.value_or(u"-"_s), e.remoteVersion,
                               e.copyCommand == copyOf(e.name) ? u"its copy"_s : u"another copy"_s}
                       .join(" | "_L1);
    }
    void showInstallProgress(qsizetype installed, qsizetype total) override
    {
        log << u"progress %1/%2"_s.arg(installed).arg(total);
    }
    void showUndoProgress(qsizetype undone, qsizetype total) override
    {
        log << u"undoing %1/%2"_s.arg(undone).arg(total);
    }
    void showInstallEnded() override { log << u"ended"_s; }
    void showSynchronizationProgress(const SynchronizationProgress& progress) override
    {
        log << u"synchronising %1/%2"_s.arg(progress.done).arg(progress.total);
    }
    Result<void, AnyError> deleteItem(const QUrl& url) const override
    {
        if (refused.contains(url.fileName()))
            return std::unexpected(AnyError(TextError{u"refused"_s}));
        return FileManager::shared()->deleteItem(url);
    }
};

// A disk that takes a millisecond a copy and refuses one of them: the handler's batches outlast a slice.
struct SlowCopier final : FileCopier {
    mutable QStringList copied;
    QString refused;
    Result<void, AnyError> copy(const CopyCommand& command) const override
    {
        QThread::msleep(1);
        if (command.sourceFileName() == refused)
            return std::unexpected(AnyError(TextError{u"refused"_s}));
        copied << command.sourceFileName();
        return {};
    }
};

struct Outcome { // std::expected has no equality that QMetaType could detect
    ThemeDifferencesResult result;
};

} // namespace

class PresentationTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_neighbours = std::make_shared<Neighbours>();
        m_presenter = std::make_shared<ThemeEntryPresenter>(m_neighbours, m_neighbours);
        m_opened.clear();
    }

    void presenterShowsLoadingThenTheOutcome_data()
    {
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<QStringList>("log");
        QTest::newRow("rows in the finder's order")
            << Outcome{QList<ThemeDifference>{
                   NewTheme(u"Zephyr"_s, Theme::Style::light, {u"Cy"_s}, Version(2, 0, 0), copyOf(u"Zephyr"_s)),
                   newTheme(u"Amber"_s),
                   UpdatedTheme(Theme::Identifier(u"Aurora"_s, Theme::Style::dark), {u"Ann"_s, QString(), u"Bo"_s},
                                {Version(1, 2, 0), Version(1, 10, 0)}, copyOf(u"Aurora"_s))}}
            << QStringList{"loading", "Zephyr | Light | Cy | - | 2.0.0 | its copy",
                           "Amber | Dark |  | - | 1.0.0 | its copy",
                           "Aurora | Dark | Ann, , Bo | 1.2.0 | 1.10.0 | its copy"};
        QTest::newRow("no differences") << Outcome{QList<ThemeDifference>{}} << QStringList{"loading", "no rows"};
        QTest::newRow("failure")
            << Outcome{std::unexpected(ThemeDifferencesError(ThemeDifferencesError::RemoteFetchingFailed{
                   RemoteThemeFetchingError(RemoteThemeFetchingError::RepositoryError{GitError(-3, 2, "offline")})}))}
            << QStringList{"loading", "failure: Computing theme differences failed: Remote theme fetching error: "
                                      "Repository error: offline"};
    }

    void presenterShowsLoadingThenTheOutcome()
    {
        QFETCH(Outcome, outcome);
        m_presenter->refresh();
        QCOMPARE(m_neighbours->log, QStringList{u"loading"_s});
        m_neighbours->answer(outcome.result);
        QTEST(m_neighbours->log, "log");
    }

    void comparisonsNeverOverlapNorOutliveThePresenter()
    {
        for (int i = 0; i < 4; ++i)
            m_presenter->refresh();
        QCOMPARE(m_neighbours->pending.size(), 1); // never two comparisons at once
        m_neighbours->answer(QList<ThemeDifference>{newTheme(u"Stale"_s)});
        QCOMPARE(m_neighbours->pending.size(), 1); // one more for all the refreshes that came meanwhile
        m_neighbours->answer(QList<ThemeDifference>{newTheme(u"Fresh"_s)});
        QCOMPARE(m_neighbours->log, QStringList({u"loading"_s, u"Fresh | Dark |  | - | 1.0.0 | its copy"_s}));
        m_presenter->refresh(); // afterwards a refresh starts at once again
        QCOMPARE(m_neighbours->pending.size(), 1);
        const std::weak_ptr<ThemeEntryPresenter> released = std::exchange(m_presenter, nullptr);
        QVERIFY(released.expired()); // the pending comparison does not keep it alive, and its result goes nowhere
        m_neighbours->answer(QList<ThemeDifference>{newTheme(u"Late"_s)});
        QCOMPARE(m_neighbours->log.size(), 3);
    }

    void synchronisationProgressShowsOnlyWhileTheListLoads()
    {
        const SynchronizationProgress halfway{SynchronizationProgress::Stage::receiving, 5, 10, 512};
        m_presenter->showSynchronizationProgress(halfway); // no comparison yet: a stray report
        m_presenter->refresh();
        m_presenter->showSynchronizationProgress(halfway);
        m_neighbours->answer(QList<ThemeDifference>{});
        // A report still on its way when the result came would bring the loading state back.
        m_presenter->showSynchronizationProgress(halfway);
        QCOMPARE(m_neighbours->log, QStringList({u"loading"_s, u"synchronising 5/10"_s, u"no rows"_s}));
    }

    void handlerInstallsAndResets_data()
    {
        QTest::addColumn<QStringList>("refused");   // by the Trash
        QTest::addColumn<QList<Answer>>("answers"); // to the alerts in turn
        QTest::addColumn<QStringList>("alerts");
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("trashed");
        QTest::addColumn<QStringList>("opened");
        const QString copy = u"The theme 'b.theme.json'"_s, clone = u"Deleting the local"_s;
        const QString themes = u"Removing installed themes"_s, a = u"a.theme.json"_s;
        QTest::newRow("all copied, then one refresh") << QStringList{} << QList<Answer>{} << QStringList{}
            << QStringList{a, "b.theme.json", "c.theme.json"} << QStringList{a} << QStringList{};
        QTest::newRow("b is gone: the batch stops, Continue") << QStringList{} << QList{Answer::first}
            << QStringList{copy} << QStringList{a} << QStringList{a} << QStringList{};
        QTest::newRow("b is gone: Delete Local Themes") << QStringList{} << QList{Answer::second}
            << QStringList{copy} << QStringList{} << QStringList{a, "clone", "installed"} << QStringList{};
        QTest::newRow("the clone stays: Show Directory") << QStringList{"clone"}
            << QList{Answer::second, Answer::second} << QStringList{copy, clone} << QStringList{}
            << QStringList{a, "installed"} << QStringList{"clone"};
        QTest::newRow("both stay: the clone's alert first, Ignore") << QStringList{"clone", "installed"}
            << QList{Answer::second, Answer::first, Answer::second} << QStringList{copy, clone, themes}
            << QStringList{a} << QStringList{a} << QStringList{"installed"};
    }

    void handlerInstallsAndResets() // a, b and c from the clone over an older a; b is gone when alerts come
    {
        QFETCH(QList<Answer>, answers);
        QFETCH(QStringList, alerts);
        QFETCH(QStringList, refused);
        m_neighbours->refused = refused;
        TrashSandbox trash;
        QTemporaryDir root;
        const QString clone = root.filePath(u"clone"_s), installed = root.filePath(u"installed"_s);
        QList<CopyCommand> commands;
        for (const auto file : {"a.theme.json"_L1, "b.theme.json"_L1, "c.theme.json"_L1}) {
            if (file != "b.theme.json"_L1 || alerts.isEmpty())
                writeTheme(clone + "/Themes"_L1, file, file, u"dark"_s, {}, u"2.0.0"_s);
            commands << CopyCommand{clone + "/Themes/"_L1 + file, installed + u'/' + file};
        }
        writeFile(installed, u"a.theme.json"_s, "old a");
        const Configuration configuration(QUrl(u"git://127.0.0.1/themes"_s), QUrl::fromLocalFile(clone),
                                          QUrl::fromLocalFile(installed));
        ThemeEntryEventHandler handler(configuration, m_presenter, FileManager::shared(), std::make_shared<WindowAlerts>(),
                                       m_neighbours);
        QDesktopServices::setUrlHandler(u"file"_s, this, "open");
        AlertAnswerer answerer(answers);
        handler.installThemes(commands);
        QDesktopServices::unsetUrlHandler(u"file"_s);

        QStringList seen;
        for (const auto& alert : answerer.seen())
            seen << alert[1].section(u' ', 0, 2); // the message's first words
        QCOMPARE(seen, alerts);
        QCOMPARE(m_neighbours->pending.size(), alerts.isEmpty() ? 1 : 0); // never a refresh after a failure
        QTEST(QDir(installed).entryList(QDir::Files), "installed");
        QTEST(trash.trashedNames(), "trashed");
        QTEST(m_opened, "opened");
    }

    void alerts_data()
    {
        QTest::addColumn<std::function<bool()>>("show");
        QTest::addColumn<QStringList>("texts"); // title, message, detail, the buttons
        QTest::addColumn<bool>("firstButtonIsTrue");
        const QString unbroken = "git://127.0.0.1/"_L1 + QString(120, u'x');
        const QString title = u"Deleting Local Theme Repository Failed"_s;
        const QString manually = u" failed. You can try to remove the directory manually and try again."_s;
        QTest::newRow("fetch failed, a long detail")
            << std::function<bool()>([=] { return showFetchFailedAlert(TextError{unbroken}); })
            << QStringList{"Update Error", "Themes from the server could not be updated.", unbroken, "Ignore", "Retry"}
            << false;
        QTest::newRow("copying failed, '%' in the file name")
            << std::function<bool()>([] { return showCopyingFailedAlert(u"100% %@ %1.json"_s, TextError{u"x"_s}); })
            << QStringList{"Copying Theme Failed",
                           "The theme '100% %@ %1.json' could not be copied. You can try to delete all local themes "
                           "to start fresh.",
                           "The operation couldn't be completed. (Corvane.CopyingThemeFailed error 1.)", "Continue",
                           "Delete Local Themes"}
            << true;
        QTest::newRow("deleting the clone failed")
            << std::function<bool()>(showDeletingLocalRepoFailedAlert)
            << QStringList{title, "Deleting the local copy of available themes" + manually, "", "Ignore",
                           "Show Directory"}
            << false;
        QTest::newRow("deleting installed themes failed")
            << std::function<bool()>(showDeletingInstalledThemesFailedAlert)
            << QStringList{title, "Removing installed themes" + manually, "", "Ignore", "Show Directory"} << false;
    }

    void alerts()
    {
        QFETCH(std::function<bool()>, show);
        QFETCH(bool, firstButtonIsTrue);
        // Return picks the first (default) button. Escape and the window manager's close are no answer:
        // the alert stays up until a button is chosen (Escape must never be Delete Local Themes).
        const QList<QList<Answer>> sequences = {{Answer::first},  {Answer::returnKey},
                                                {Answer::second}, {Answer::escape, Answer::escape, Answer::first},
                                                {Answer::close, Answer::second}};
        for (const QList<Answer>& sequence : sequences) {
            const Answer answer = sequence.last();
            AlertAnswerer alerts(sequence);
            alerts.onShown = [](AlertDialog* alert) { // a long detail wraps within 300 pixels, uncut
                if (auto detail = qobject_cast<QLabel*>(alert->accessoryView()))
                    QVERIFY(detail->width() <= 300 && detail->heightForWidth(detail->width()) <= detail->height());
            };
            QCOMPARE(show(), (answer == Answer::first || answer == Answer::returnKey) == firstButtonIsTrue);
            QTEST(alerts.seen().value(0), "texts");
            QCOMPARE(alerts.seen().size(), 1);
        }
    }

    void aLongBatchCopiesInSlicesAndShowsItsProgress_data()
    {
        QTest::addColumn<QString>("refused");
        QTest::addColumn<int>("copied");
        QTest::newRow("all 200 copied, then a refresh") << QString() << 200;
        QTest::newRow("the 150th refused: the batch stops there") << u"t149.theme.json"_s << 149;
    }

    void aLongBatchCopiesInSlicesAndShowsItsProgress()
    {
        QFETCH(QString, refused);
        QFETCH(int, copied);
        auto copier = std::make_shared<SlowCopier>();
        copier->refused = refused;
        const Configuration configuration(QUrl(u"git://127.0.0.1/themes"_s), QUrl::fromLocalFile(u"/clone"_s),
                                          QUrl::fromLocalFile(u"/installed"_s));
        auto handler = std::make_shared<ThemeEntryEventHandler>(configuration, m_presenter, copier,
                                                                std::make_shared<WindowAlerts>(), m_neighbours);
        QList<CopyCommand> commands;
        for (int index = 0; index < 200; ++index)
            commands << copyOf(u"t%1.theme.json"_s.arg(index));
        AlertAnswerer answerer({Answer::first}); // Continue

        handler->installThemes(commands);
        QVERIFY(handler->isInstalling()); // the first slice is done; the rest waits for the event loop
        const qsizetype firstSlice = copier->copied.size();
        QVERIFY(firstSlice > 0 && firstSlice < copied);
        QCOMPARE(m_neighbours->log, QStringList{u"progress %1/200"_s.arg(firstSlice)});
        handler->installThemes({copyOf(u"other.theme.json"_s)}); // stale rows while a batch runs: ignored
        QTRY_VERIFY(!handler->isInstalling());

        QCOMPARE(copier->copied.size(), copied);
        QVERIFY(!copier->copied.contains(u"other.theme.json"_s));
        QStringList progress = m_neighbours->log.filter(u"progress"_s);
        QVERIFY(progress.size() >= 2);
        qsizetype previous = 0;
        for (const QString& line : std::as_const(progress)) {
            const qsizetype installed = line.section(u' ', 1).section(u'/', 0, 0).toLongLong();
            QVERIFY(installed > previous && installed <= copied);
            previous = installed;
        }
        // A refresh after success; after a failure the progress ends before the alert, and no refresh.
        QCOMPARE(m_neighbours->log.last(), refused.isEmpty() ? u"loading"_s : u"ended"_s);
        QCOMPARE(answerer.seen().size(), refused.isEmpty() ? 0 : 1);
        QCOMPARE(m_neighbours->pending.size(), refused.isEmpty() ? 1 : 0);
    }

    // Undoing thousands of files runs off the main thread: the event loop keeps turning, installs wait,
    // and the progress it showed ends before the refresh.
    void undoOfALargeBatchRunsOffTheMainThread()
    {
        TrashSandbox trash;
        QTemporaryDir dir;
        const QString source = dir.filePath(u"source"_s), installed = dir.filePath(u"installed"_s);
        constexpr int count = 1000;
        QVERIFY(QDir().mkpath(installed));
        {
            const InstallRecord record(QUrl::fromLocalFile(installed));
            for (int index = 0; index < count; ++index) {
                const QString file = u"t%1.theme.json"_s.arg(index);
                writeTheme(source, file, file, u"dark"_s, {u"Ann"_s}, u"1.0.0"_s);
                QVERIFY(FileManager::shared()->copy(CopyCommand{source + u'/' + file, installed + u'/' + file}));
            }
        }
        const Configuration configuration(QUrl(u"git://127.0.0.1/themes"_s), QUrl::fromLocalFile(u"/clone"_s),
                                          QUrl::fromLocalFile(installed));
        auto handler = std::make_shared<ThemeEntryEventHandler>(configuration, m_presenter, FileManager::shared(),
                                                                std::make_shared<WindowAlerts>(), m_neighbours);
        qsizetype undone = 0;
        handler->installUndone = [&](const UndoneInstall& files) { undone = files.size(); };

        handler->undoLastInstall();
        QVERIFY(handler->isUndoing());
        handler->installThemes({CopyCommand{source + u"/t0.theme.json"_s, installed + u"/t0.theme.json"_s}});
        int turns = 0;
        while (handler->isUndoing() && turns < 100000) {
            QTest::qWait(1);
            ++turns;
        }
        QVERIFY(!handler->isUndoing());
        QVERIFY(turns > 1);

        QCOMPARE(undone, count);
        QCOMPARE(QDir(installed).entryList(QDir::Files), QStringList{}); // the install during the undo was ignored
        const QStringList progress = m_neighbours->log.filter(u"undoing"_s);
        QVERIFY(!progress.isEmpty());
        qsizetype previous = 0;
        for (const QString& line : progress) {
            const qsizetype done = line.section(u' ', 1).section(u'/', 0, 0).toLongLong();
            QVERIFY(done >= previous && line.endsWith(u"/%1"_s.arg(count)));
            previous = done;
        }
        QCOMPARE(previous, count);
        QCOMPARE(m_neighbours->log.mid(m_neighbours->log.indexOf(progress.last()) + 1),
                 (QStringList{u"ended"_s, u"loading"_s}));
    }

public slots:
    void open(const QUrl& url) { m_opened << url.fileName(); } // what would open in the file browser

private:
    std::shared_ptr<Neighbours> m_neighbours;
    std::shared_ptr<ThemeEntryPresenter> m_presenter;
    QStringList m_opened;
};

QTEST_MAIN(PresentationTest)
#include "PresentationTest.moc"
