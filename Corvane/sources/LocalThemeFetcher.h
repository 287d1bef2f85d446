// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/FetchesLocalThemes.h"
#include "Corvane/themes/CreatesDirectory.h"
#include "Corvane/themes/ThemeReader.h"

#include <QUrl>

#include <memory>

namespace corvane {

// Makes sure the installed-themes directory exists and reads its theme files. Not for two threads at
// once (its reader is not).
class LocalThemeFetcher final : public FetchesLocalThemes {
public:
    LocalThemeFetcher(QUrl installedThemeDirectoryURL, std::shared_ptr<ThemeReader> themeReader,
                      std::shared_ptr<const CreatesDirectory> directoryCreator)
        : m_installedThemeDirectoryURL(std::move(installedThemeDirectoryURL))
        , m_themeReader(std::move(themeReader))
        , m_directoryCreator(std::move(directoryCreator))
    {
    }

    Result<QList<LocalTheme>, LocalThemeFetchingError> fetchLocalThemes() override;

private:
    QUrl m_installedThemeDirectoryURL;
    std::shared_ptr<ThemeReader> m_themeReader;
    std::shared_ptr<const CreatesDirectory> m_directoryCreator;
};

} // namespace corvane
