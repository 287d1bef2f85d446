// The presenter against a scripted finder and a view that records what it is shown.
#include "Corvane/module/TextError.h"
#include "Corvane/presentation/ThemeEntryPresenter.h"

#include <QTest>

#include <deque>

using namespace corvane;

namespace {

CopyCommand copyOf(const QString& file)
{
    return CopyCommand{QUrl::fromLocalFile(QStringLiteral("/clone/Themes/") + file),
                       QUrl::fromLocalFile(QStringLiteral("/installed/") + file)};
}

Version version(const char* text)
{
    return *Version::fromString(QString::fromLatin1(text));
}

ThemeDifferencesError remoteFailure(const QString& message)
{
    return ThemeDifferencesError(ThemeDifferencesError::RemoteFetchingFailed{
        RemoteThemeFetchingError(RemoteThemeFetchingError::RepositoryError{GitError(-3, 2, message)})});
}

// Answers each request when the test says so, as the asynchronous finder does later on the main thread.
class ScriptedFinder final : public FindsThemeDifferences {
public:
    void findDifferences(std::function<void(ThemeDifferencesResult)> completion) override
    {
        pending.push_back(std::move(completion));
        ++requests;
    }
    void answer(ThemeDifferencesResult result)
    {
        QVERIFY(!pending.empty());
        auto completion = std::move(pending.front());
        pending.pop_front();
        completion(std::move(result));
    }

    std::deque<std::function<void(ThemeDifferencesResult)>> pending;
    int requests = 0;
};

class RecordingView final : public ShowsThemeUpdates {
public:
    void showThemeEntries(const ThemeListState& state) override { states.push_back(state); }

    // "loading", "rows:Name,Name" or "failure:description", one per state shown.
    QStringList log() const
    {
        QStringList lines;
        for (const ThemeListState& state : states) {
            if (!state)
                lines << QStringLiteral("loading");
            else if (!*state)
                lines << QStringLiteral("failure:") + state->error().errorDescription();
            else {
                QStringList names;
                for (const ThemeEntry& entry : **state)
                    names << entry.name;
                lines << QStringLiteral("rows:") + names.join(u',');
            }
        }
        return lines;
    }

    std::vector<ThemeListState> states;
};

struct Setup {
    std::shared_ptr<ScriptedFinder> finder = std::make_shared<ScriptedFinder>();
    std::shared_ptr<RecordingView> view = std::make_shared<RecordingView>();
    std::shared_ptr<ThemeEntryPresenter> presenter = std::make_shared<ThemeEntryPresenter>(finder, view);
};

} // namespace

Q_DECLARE_METATYPE(ThemeDifference)

class ThemeEntryPresenterTest : public QObject {
    Q_OBJECT

private slots:
    void rowForEachDifference_data()
    {
        QTest::addColumn<ThemeDifference>("difference");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("style");
        QTest::addColumn<QString>("authors");
        QTest::addColumn<QString>("installedVersion"); // "-" for none
        QTest::addColumn<QString>("remoteVersion");

        QTest::newRow("new theme has no installed version")
            << ThemeDifference(NewTheme(QStringLiteral("Paper Mint"), Theme::Style::light, {QStringLiteral("Cy")},
                                        version("2.0.0"), copyOf(QStringLiteral("paper-mint.theme.json"))))
            << "Paper Mint" << "Light" << "Cy" << "-" << "2.0.0";
        QTest::newRow("update prints all three numbers")
            << ThemeDifference(UpdatedTheme(Theme::Identifier(QStringLiteral("Harbor Night"), Theme::Style::dark),
                                            {QStringLiteral("Ann"), QStringLiteral("Bo"), QStringLiteral("Cy")},
                                            {version("1.2"), version("1.10")},
                                            copyOf(QStringLiteral("harbor-night.theme.json"))))
            << "Harbor Night" << "Dark" << "Ann, Bo, Cy" << "1.2.0" << "1.10.0";
        QTest::newRow("no authors give the empty text")
            << ThemeDifference(NewTheme(QStringLiteral("Ember"), Theme::Style::dark, {}, version("1"),
                                        copyOf(QStringLiteral("ember.theme.json"))))
            << "Ember" << "Dark" << "" << "-" << "1.0.0";
        QTest::newRow("names are neither trimmed nor de-duplicated")
            << ThemeDifference(NewTheme(QStringLiteral("Sandstone"), Theme::Style::light,
                                        {QStringLiteral(" Amal "), QStringLiteral(" Amal ")}, version("0.9.1"),
                                        copyOf(QStringLiteral("sandstone.theme.json"))))
            << "Sandstone" << "Light" << " Amal ,  Amal " << "-" << "0.9.1";
        QTest::newRow("an empty name among authors keeps its separators")
            << ThemeDifference(UpdatedTheme(Theme::Identifier(QStringLiteral("Nordlys"), Theme::Style::light),
                                            {QStringLiteral("Ola"), QString(), QStringLiteral("Ingrid")},
                                            {version("3.0.0"), version("3.0.1")},
                                            copyOf(QStringLiteral("nordlys.theme.json"))))
            << "Nordlys" << "Light" << "Ola, , Ingrid" << "3.0.0" << "3.0.1";
    }

    void rowForEachDifference()
    {
        QFETCH(ThemeDifference, difference);
        QFETCH(QString, name);
        QFETCH(QString, style);
        QFETCH(QString, authors);
        QFETCH(QString, installedVersion);
        QFETCH(QString, remoteVersion);

        Setup setup;
        setup.presenter->refresh();
        setup.finder->answer(QList<ThemeDifference>{difference});
        QCOMPARE(setup.view->states.size(), size_t(2));
        const ThemeEntry& entry = setup.view->states.back().value().value().first();
        QCOMPARE(entry.name, name);
        QCOMPARE(entry.style, style);
        QCOMPARE(entry.authors, authors);
        QCOMPARE(entry.installedVersion.value_or(QStringLiteral("-")), installedVersion);
        QCOMPARE(entry.remoteVersion, remoteVersion);
        const CopyCommand& expected = std::visit([](const auto& d) -> const CopyCommand& { return d.copyCommand; },
                                                 difference);
        QCOMPARE(entry.copyCommand, expected);
    }

    void rowsKeepTheFindersOrder()
    {
        Setup setup;
        setup.presenter->refresh();
        // The finder puts new themes first; the presenter neither sorts nor groups again.
        setup.finder->answer(QList<ThemeDifference>{
            NewTheme(QStringLiteral("Zephyr"), Theme::Style::dark, {}, version("1"), copyOf(QStringLiteral("z"))),
            NewTheme(QStringLiteral("Amber"), Theme::Style::light, {}, version("1"), copyOf(QStringLiteral("a"))),
            UpdatedTheme(Theme::Identifier(QStringLiteral("Aurora"), Theme::Style::dark), {},
                         {version("1"), version("2")}, copyOf(QStringLiteral("au")))});
        QCOMPARE(setup.view->log(), QStringList({QStringLiteral("loading"), QStringLiteral("rows:Zephyr,Amber,Aurora")}));
    }

    void eachRefreshShowsLoadingThenTheOutcome_data()
    {
        QTest::addColumn<bool>("fails");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("no differences") << false << QStringList{QStringLiteral("loading"), QStringLiteral("rows:")};
        QTest::newRow("failure carries the error unchanged")
            << true << QStringList{QStringLiteral("loading"), QStringLiteral("failure:Computing theme differences "
                                                                             "failed: Remote theme fetching error: "
                                                                             "Repository error: offline")};
    }

    void eachRefreshShowsLoadingThenTheOutcome()
    {
        QFETCH(bool, fails);
        QFETCH(QStringList, expected);
        Setup setup;
        setup.presenter->refresh();
        QCOMPARE(setup.view->log(), QStringList{QStringLiteral("loading")});
        if (fails)
            setup.finder->answer(std::unexpected(remoteFailure(QStringLiteral("offline"))));
        else
            setup.finder->answer(QList<ThemeDifference>{});
        // The error's own text decides the failure line; compare only its start when wording differs.
        const QStringList log = setup.view->log();
        QCOMPARE(log.size(), expected.size());
        QCOMPARE(log.first(), expected.first());
        if (fails) {
            QVERIFY(log.last().startsWith(QStringLiteral("failure:")));
            const auto* error = setup.view->states.back()->error().as<ThemeDifferencesError>();
            QVERIFY2(error, "the view gets the finder's error value itself");
            QVERIFY(log.last().endsWith(QStringLiteral("offline")));
        } else {
            QCOMPARE(log.last(), expected.last());
        }
    }

    void aReleasedPresenterDropsTheLateResult()
    {
        Setup setup;
        setup.presenter->refresh();
        const std::weak_ptr<ThemeEntryPresenter> presenter = setup.presenter;
        setup.presenter.reset();
        QVERIFY(presenter.expired()); // the callback does not keep it alive
        setup.finder->answer(QList<ThemeDifference>{});
        QCOMPARE(setup.view->log(), QStringList{QStringLiteral("loading")});
    }

    void refreshesDuringAComparisonAreCoalesced_data()
    {
        QTest::addColumn<int>("extraRefreshes");
        QTest::addColumn<int>("comparisons");
        QTest::newRow("none") << 0 << 1;
        QTest::newRow("one") << 1 << 2;
        QTest::newRow("many become one") << 5 << 2;
    }

    void refreshesDuringAComparisonAreCoalesced()
    {
        QFETCH(int, extraRefreshes);
        QFETCH(int, comparisons);
        Setup setup;
        setup.presenter->refresh();
        for (int i = 0; i < extraRefreshes; ++i)
            setup.presenter->refresh();
        QCOMPARE(setup.finder->requests, 1); // never two comparisons at once

        // The stale result is not shown; the one comparison that follows it is.
        setup.finder->answer(QList<ThemeDifference>{
            NewTheme(QStringLiteral("Stale"), Theme::Style::dark, {}, version("1"), copyOf(QStringLiteral("s")))});
        QCOMPARE(setup.finder->requests, comparisons);
        if (comparisons == 2)
            setup.finder->answer(QList<ThemeDifference>{NewTheme(QStringLiteral("Fresh"), Theme::Style::dark, {},
                                                                 version("1"), copyOf(QStringLiteral("f")))});
        QVERIFY(setup.finder->pending.empty());
        QCOMPARE(setup.view->log(),
                 QStringList({QStringLiteral("loading"),
                              comparisons == 2 ? QStringLiteral("rows:Fresh") : QStringLiteral("rows:Stale")}));

        // Afterwards a refresh starts at once again.
        setup.presenter->refresh();
        QCOMPARE(setup.finder->requests, comparisons + 1);
    }

    void aRetryFromInsideTheFailureStartsAFreshComparison()
    {
        // The window runs its alert inside showThemeEntries; a Retry there refreshes from within.
        struct RetryingView final : ShowsThemeUpdates {
            std::weak_ptr<ThemeEntryPresenter> presenter;
            int failures = 0;
            QStringList log;
            void showThemeEntries(const ThemeListState& state) override
            {
                log << (!state ? QStringLiteral("loading") : *state ? QStringLiteral("rows") : QStringLiteral("failure"));
                if (state && !*state && ++failures == 1)
                    presenter.lock()->refresh();
            }
        };
        auto finder = std::make_shared<ScriptedFinder>();
        auto view = std::make_shared<RetryingView>();
        auto presenter = std::make_shared<ThemeEntryPresenter>(finder, view);
        view->presenter = presenter;
        presenter->refresh();
        finder->answer(std::unexpected(remoteFailure(QStringLiteral("offline"))));
        QCOMPARE(finder->requests, 2);
        finder->answer(QList<ThemeDifference>{});
        QCOMPARE(view->log, QStringList({QStringLiteral("loading"), QStringLiteral("failure"), QStringLiteral("loading"),
                                         QStringLiteral("rows")}));
    }
};

QTEST_MAIN(ThemeEntryPresenterTest)
#include "ThemeEntryPresenterTest.moc"
