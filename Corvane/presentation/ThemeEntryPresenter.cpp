// SPDX-License-Identifier: MIT
#include "Corvane/presentation/ThemeEntryPresenter.h"

#include "Corvane/differences/StyleLabel.h"

namespace corvane {
namespace {

QString styleKey(Theme::Style style)
{
    return style == Theme::Style::dark ? QStringLiteral("dark") : QStringLiteral("light");
}

QString joinedAuthors(const QStringList& authors)
{
    return authors.join(QStringLiteral(", "));
}

ThemeListState stateFor(ThemeDifferencesResult result)
{
    if (!result)
        return Result<QList<ThemeEntry>, AnyError>(std::unexpected(AnyError(std::move(result.error()))));
    QList<ThemeEntry> entries;
    entries.reserve(result->size());
    for (const ThemeDifference& difference : std::as_const(*result))
        entries.append(ThemeEntryPresenter::makeThemeEntry(difference));
    return Result<QList<ThemeEntry>, AnyError>(std::move(entries));
}

} // namespace

ThemeEntryPresenter::ThemeEntryPresenter(std::shared_ptr<FindsThemeDifferences> themeDifferenceFinder,
                                         std::shared_ptr<ShowsThemeUpdates> view)
    : m_themeDifferenceFinder(std::move(themeDifferenceFinder)), m_view(std::move(view))
{
}

void ThemeEntryPresenter::refresh()
{
    if (m_comparisonRunning) {
        // The view already shows the loading state; the running comparison's result is stale.
        m_refreshPending = true;
        return;
    }
    m_view->showThemeEntries(std::nullopt);
    startComparison();
}

void ThemeEntryPresenter::startComparison()
{
    m_comparisonRunning = true;
    m_themeDifferenceFinder->findDifferences([presenter = weak_from_this()](ThemeDifferencesResult result) {
        if (const auto self = presenter.lock())
            self->comparisonFinished(std::move(result));
    });
}

void ThemeEntryPresenter::comparisonFinished(ThemeDifferencesResult result)
{
    m_comparisonRunning = false;
    if (m_refreshPending) {
        m_refreshPending = false;
        startComparison();
        return;
    }
    // The view may run a modal alert in here whose Retry calls refresh() again: the state above is
    // already settled for that.
    m_view->showThemeEntries(stateFor(std::move(result)));
}

void ThemeEntryPresenter::showInstallProgress(qsizetype installed, qsizetype total)
{
    m_view->showInstallProgress(installed, total);
}

void ThemeEntryPresenter::showUndoProgress(qsizetype undone, qsizetype total)
{
    m_view->showUndoProgress(undone, total);
}

void ThemeEntryPresenter::showInstallEnded()
{
    m_view->showInstallEnded();
}

void ThemeEntryPresenter::showSynchronizationProgress(const SynchronizationProgress& progress)
{
    if (m_comparisonRunning)
        m_view->showSynchronizationProgress(progress);
}

ThemeEntry ThemeEntryPresenter::makeThemeEntry(const ThemeDifference& difference)
{
    if (const auto* newTheme = std::get_if<NewTheme>(&difference)) {
        return ThemeEntry{newTheme->name,
                          styleLabel(newTheme->style),
                          joinedAuthors(newTheme->authors),
                          std::nullopt,
                          newTheme->version.toString(),
                          newTheme->copyCommand,
                          styleKey(newTheme->style)};
    }
    const auto& update = std::get<UpdatedTheme>(difference);
    return ThemeEntry{update.identifier.name(),
                      styleLabel(update.identifier.style()),
                      joinedAuthors(update.authors),
                      update.versionChange.from.toString(),
                      update.versionChange.to.toString(),
                      update.copyCommand,
                      styleKey(update.identifier.style())};
}

} // namespace corvane
