// SPDX-License-Identifier: MIT
// The comparison of remote and installed themes at the scale of a large curated collection: the
// indexed comparison the updater runs against the plain "scan the installed list from its start for
// each remote theme" rule it must agree with.

#include "Corvane/differences/FindThemeDifferences.h"

#include <benchmark/benchmark.h>

#include <cstdio>

#include <QFileInfo>
#include <QString>
#include <QUrl>

using namespace corvane;

namespace {

// Remote theme i is "Theme i"; installed theme i is the same theme for even i (every second one of
// those older) and a theme the repository does not publish for odd i. So half the remote themes are
// new, which makes the plain rule scan the whole installed list for each of them.
struct Lists {
    QList<RemoteTheme> remote;
    QList<LocalTheme> installed;
};

Lists makeLists(int count)
{
    const Version current(1, 2, 0);
    const Version older(1, 1, 0);
    Lists lists;
    lists.remote.reserve(count);
    lists.installed.reserve(count);
    for (int i = 0; i < count; ++i) {
        const QString file = QStringLiteral("theme-%1.theme.json").arg(i, 5, 10, QLatin1Char('0'));
        const QString name = QStringLiteral("Theme %1").arg(i, 5, 10, QLatin1Char('0'));
        const Theme::Style style = i % 3 ? Theme::Style::dark : Theme::Style::light;
        const QStringList authors{QStringLiteral("Author %1").arg(i % 97), QStringLiteral("Curator")};
        lists.remote.append(RemoteTheme{StoredTheme{QStringLiteral("/clone/Themes/") + file,
                                                    Theme{Theme::Identifier(name, style), authors, current}}});
        const QString installedName = i % 2 == 0 ? name : QStringLiteral("Other %1").arg(i, 5, 10, QLatin1Char('0'));
        lists.installed.append(LocalTheme{StoredTheme{
            QStringLiteral("/home/user/themes/") + file,
            Theme{Theme::Identifier(installedName, style), authors, i % 4 == 0 ? older : current}}});
    }
    return lists;
}

enum Groups { newThemes = 1, updatedThemes = 2, both = 3 };

// The rule word for word: one scan of the installed list per remote theme.
QList<ThemeDifference> literalScan(const QUrl& directory, const QList<RemoteTheme>& remote,
                                   const QList<LocalTheme>& installed, Groups groups = both)
{
    QList<ThemeDifference> added;
    QList<ThemeDifference> updated;
    const QString prefix = directory.toLocalFile() + u'/';
    for (const RemoteTheme& theme : remote) {
        const StoredTheme& stored = theme.theme;
        const LocalTheme* match = nullptr;
        for (const LocalTheme& local : installed) {
            if (local.theme.theme.identifier == stored.theme.identifier) {
                match = &local;
                break;
            }
        }
        if (!match) {
            if (groups & newThemes)
                added.append(NewTheme(stored.theme.identifier.name(), stored.theme.identifier.style(), stored.theme.authors,
                                  stored.theme.version,
                                  CopyCommand{stored.path, prefix + QFileInfo(stored.path).fileName()}));
        } else if ((groups & updatedThemes) && match->theme.theme.version < stored.theme.version) {
            updated.append(UpdatedTheme(match->theme.theme.identifier, stored.theme.authors,
                                        {match->theme.theme.version, stored.theme.version},
                                        CopyCommand{stored.path, match->theme.path}));
        }
    }
    return added + updated;
}

const QUrl installedDirectory = QUrl::fromLocalFile(QStringLiteral("/home/user/themes"));

void indexedComparison(benchmark::State& state)
{
    const Lists lists = makeLists(int(state.range(0)));
    const FindThemeDifferences finder(installedDirectory, nullptr, nullptr);
    for (auto _ : state)
        benchmark::DoNotOptimize(finder.differences(lists.remote, lists.installed));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void literalComparison(benchmark::State& state)
{
    const Lists lists = makeLists(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(literalScan(installedDirectory, lists.remote, lists.installed));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The two steps alone, to tell the matching from the making of results: a new theme needs a
// destination URL built and parsed, an update reuses the installed file's URL.
void indexedNewThemesStep(benchmark::State& state)
{
    const Lists lists = makeLists(int(state.range(0)));
    const FindThemeDifferences finder(installedDirectory, nullptr, nullptr);
    for (auto _ : state)
        benchmark::DoNotOptimize(finder.findNewThemes(lists.remote, lists.installed));
}

void literalNewThemesStep(benchmark::State& state)
{
    const Lists lists = makeLists(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(literalScan(installedDirectory, lists.remote, lists.installed, newThemes));
}

void indexedUpdatedThemesStep(benchmark::State& state)
{
    const Lists lists = makeLists(int(state.range(0)));
    const FindThemeDifferences finder(installedDirectory, nullptr, nullptr);
    for (auto _ : state)
        benchmark::DoNotOptimize(finder.findUpdatedThemes(lists.remote, lists.installed));
}

void literalUpdatedThemesStep(benchmark::State& state)
{
    const Lists lists = makeLists(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(literalScan(installedDirectory, lists.remote, lists.installed, updatedThemes));
}

} // namespace

BENCHMARK(indexedComparison)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(literalComparison)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(indexedNewThemesStep)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(literalNewThemesStep)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(indexedUpdatedThemesStep)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(literalUpdatedThemesStep)->Arg(10000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    // Both must give the same rows, or the figures compare different work.
    const Lists lists = makeLists(2000);
    if (FindThemeDifferences(installedDirectory, nullptr, nullptr).differences(lists.remote, lists.installed)
        != literalScan(installedDirectory, lists.remote, lists.installed)) {
        std::fprintf(stderr, "the indexed comparison disagrees with the plain scan\n");
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
