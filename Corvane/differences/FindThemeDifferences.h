// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/ThemeDifference.h"
#include "Corvane/differences/ThemeDifferencesError.h"
#include "Corvane/module/Result.h"
#include "Corvane/sources/FetchesLocalThemes.h"
#include "Corvane/sources/FetchesRemoteThemes.h"

#include <QList>
#include <QUrl>

#include <memory>

namespace corvane {

// Compares the themes the repository publishes with the installed ones: every remote theme that is
// not installed is new, every remote theme whose first installed namesake (same canonical name, same
// style) is older is an update. Blocks for the whole synchronisation and reading; holds no state.
class FindThemeDifferences {
public:
    FindThemeDifferences(QUrl installedThemesDirectoryURL, std::shared_ptr<FetchesRemoteThemes> remoteThemeFetcher,
                         std::shared_ptr<FetchesLocalThemes> localThemeFetcher);

    const QUrl& installedThemesDirectoryURL() const { return m_installedThemesDirectoryURL; }

    // The remote side first: when it fails, the installed themes are not read at all.
    Result<QList<ThemeDifference>, ThemeDifferencesError> findDifferences() const;

    // Every new theme, then every update, each group in the remote list's order.
    QList<ThemeDifference> differences(const QList<RemoteTheme>& remoteThemes,
                                       const QList<LocalTheme>& localThemes) const;
    QList<NewTheme> findNewThemes(const QList<RemoteTheme>& remoteThemes, const QList<LocalTheme>& localThemes) const;
    QList<UpdatedTheme> findUpdatedThemes(const QList<RemoteTheme>& remoteThemes,
                                          const QList<LocalTheme>& localThemes) const;

private:
    QUrl m_installedThemesDirectoryURL;
    std::shared_ptr<FetchesRemoteThemes> m_remoteThemeFetcher;
    std::shared_ptr<FetchesLocalThemes> m_localThemeFetcher;
};

} // namespace corvane
