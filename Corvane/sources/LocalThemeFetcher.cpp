// SPDX-License-Identifier: MIT
#include "Corvane/sources/LocalThemeFetcher.h"

#include "Corvane/themes/InstallLeftovers.h"

namespace corvane {

Result<QList<LocalTheme>, LocalThemeFetchingError> LocalThemeFetcher::fetchLocalThemes()
{
    if (auto created = m_directoryCreator->createDirectoryIfNeeded(m_installedThemeDirectoryURL); !created)
        return std::unexpected(LocalThemeFetchingError::FileError{created.error()});
    // Every list of the installed themes first clears what a killed install left there, so that no
    // run has to remember an earlier one.
    InstallLeftovers::removeFrom(m_installedThemeDirectoryURL);
    return bimap(
        m_themeReader->readThemes(m_installedThemeDirectoryURL),
        [](QList<StoredTheme> themes) {
            QList<LocalTheme> local;
            local.reserve(themes.size());
            for (StoredTheme& theme : themes)
                local.append(LocalTheme{std::move(theme)});
            return local;
        },
        [](ThemeDecodingError error) { return LocalThemeFetchingError(LocalThemeFetchingError::DecodingError{std::move(error)}); });
}

} // namespace corvane
