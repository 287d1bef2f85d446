// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/FetchesRemoteThemes.h"
#include "Corvane/sources/SynchronizedRepository.h"
#include "Corvane/themes/ThemeReader.h"

#include <memory>

namespace corvane {

// Synchronises the local clone and reads the theme files of its "Themes" directory. The repository's
// content is untrusted: symbolic links among the theme files, a "Themes" that is a link, and theme
// files that are not regular files are refused before anything is read. Not for two threads at once
// (its reader is not).
class RemoteThemeFetcher final : public FetchesRemoteThemes {
public:
    RemoteThemeFetcher(SynchronizedRepository synchronizedRepository, std::shared_ptr<ThemeReader> themeReader)
        : m_synchronizedRepository(std::move(synchronizedRepository)), m_themeReader(std::move(themeReader))
    {
    }

    Result<QList<RemoteTheme>, RemoteThemeFetchingError> fetchRemoteThemes() override;

private:
    SynchronizedRepository m_synchronizedRepository;
    std::shared_ptr<ThemeReader> m_themeReader;
};

} // namespace corvane
