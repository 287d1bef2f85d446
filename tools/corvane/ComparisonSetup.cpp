// SPDX-License-Identifier: MIT
#include "ComparisonSetup.h"
#include "TerminalProgress.h"

#include "Corvane/presentation/ThemeEntryPresenter.h"
#include "Corvane/sources/LocalThemeFetcher.h"
#include "Corvane/sources/RemoteThemeFetcher.h"
#include "Corvane/sources/SynchronizedRepository.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/themes/ThemeDecoder.h"
#include "Corvane/themes/ThemeReader.h"

namespace corvane::cli {
namespace {

std::shared_ptr<ThemeReader> makeReader()
{
    return std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), FileManager::shared());
}

} // namespace

std::shared_ptr<FindThemeDifferences> makeThemeDifferenceFinder(const Configuration& configuration,
                                                                ReportsSynchronizationProgress progress)
{
    SynchronizedRepository repository(configuration);
    repository.reportProgressTo(std::move(progress));
    auto remote = std::make_shared<RemoteThemeFetcher>(std::move(repository), makeReader());
    auto local = std::make_shared<LocalThemeFetcher>(configuration.installedThemeDirectory(), makeReader(),
                                                     FileManager::shared());
    return std::make_shared<FindThemeDifferences>(configuration.installedThemeDirectory(), std::move(remote),
                                                  std::move(local));
}

Result<QList<ThemeRow>, QString> findThemeRows(const Configuration& configuration)
{
    Result<QList<ThemeDifference>, ThemeDifferencesError> differences = [&] {
        TerminalProgress terminal;
        return makeThemeDifferenceFinder(configuration, terminal.reporter())->findDifferences();
    }();
    return bimap(
        std::move(differences),
        [](QList<ThemeDifference> differences) {
            QList<ThemeRow> rows;
            rows.reserve(differences.size());
            for (ThemeDifference& difference : differences) {
                ThemeEntry entry = ThemeEntryPresenter::makeThemeEntry(difference);
                rows.append(ThemeRow{std::move(difference), std::move(entry)});
            }
            return rows;
        },
        [](ThemeDifferencesError error) { return error.errorDescription(); });
}

void removeSkipped(QList<ThemeRow>& rows, const SkippedVersions& skipped)
{
    if (!skipped.isEmpty())
        rows.removeIf([&](const ThemeRow& row) { return skipped.skips(row.entry); });
}

} // namespace corvane::cli
