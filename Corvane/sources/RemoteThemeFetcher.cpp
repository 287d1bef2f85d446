// SPDX-License-Identifier: MIT
#include "Corvane/sources/RemoteThemeFetcher.h"

#include "Corvane/module/TextError.h"
#include "Corvane/sources/UntrustedThemeFiles.h"

#include <QDir>

namespace corvane {
namespace {

RemoteThemeFetchingError decodingFailed(AnyError error)
{
    return RemoteThemeFetchingError::ThemeDecodingFailed{ThemeDecodingError{std::move(error)}};
}

} // namespace

Result<QList<RemoteTheme>, RemoteThemeFetchingError> RemoteThemeFetcher::fetchRemoteThemes()
{
    // The repository keeps the clone locked until it goes out of scope: no other synchronisation
    // rewrites the files while they are read.
    auto repository = m_synchronizedRepository.synchronize();
    if (!repository)
        return std::unexpected(RemoteThemeFetchingError::RepositoryError{repository.error()});

    const std::optional<QUrl> workingDirectory = repository->directoryURL();
    if (!workingDirectory)
        return std::unexpected(decodingFailed(TextError{QStringLiteral("Expected directoryURL")}));
    const QString clonePath = workingDirectory->toLocalFile();
    const QString themesPath = QDir(clonePath).filePath(QStringLiteral("Themes"));

    auto linksAtHead = repository->symbolicLinksAtHead(QStringLiteral("Themes"), QStringLiteral(".theme.json"));
    if (!linksAtHead)
        return std::unexpected(RemoteThemeFetchingError::RepositoryError{linksAtHead.error()});
    if (auto refusal = UntrustedThemeFiles::refusal(clonePath, themesPath, *linksAtHead))
        return std::unexpected(decodingFailed(std::move(*refusal)));

    return bimap(
        m_themeReader->readThemes(QUrl::fromLocalFile(themesPath)),
        [](QList<StoredTheme> themes) {
            QList<RemoteTheme> remote;
            remote.reserve(themes.size());
            for (StoredTheme& theme : themes)
                remote.append(RemoteTheme{std::move(theme)});
            return remote;
        },
        [](ThemeDecodingError error) {
            return RemoteThemeFetchingError(RemoteThemeFetchingError::ThemeDecodingFailed{std::move(error)});
        });
}

} // namespace corvane
