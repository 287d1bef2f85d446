#include "Corvane/differences/FindThemeDifferences.h"

#include <QHash>

namespace corvane {
namespace {

// The first installed theme of every identifier. Matching means "scan the installed list from its
// start"; indexing only the first occurrence gives the same answer in one pass instead of one scan per
// remote theme, which for ten thousand themes on each side is the difference between milliseconds and
// seconds.
class FirstInstalledIndex {
public:
    explicit FirstInstalledIndex(const QList<LocalTheme>& localThemes)
    {
        m_first.reserve(localThemes.size());
        for (const LocalTheme& local : localThemes) {
            const LocalTheme*& first = m_first[local.theme.theme.identifier];
            if (!first)
                first = &local;
        }
    }

    const LocalTheme* firstMatch(const RemoteTheme& remote) const
    {
        return m_first.value(remote.theme.theme.identifier, nullptr);
    }

private:
    QHash<Theme::Identifier, const LocalTheme*> m_first;
};

// The installed-themes directory with one more path component. Built from the directory's encoded
// path so that a file name with "%" or "#" stays the same file name.
class DestinationMaker {
public:
    explicit DestinationMaker(const QUrl& directory) : m_directory(directory)
    {
        m_prefix = directory.path(QUrl::FullyEncoded);
        if (!m_prefix.endsWith(u'/'))
            m_prefix += u'/';
    }

    QUrl destination(const QUrl& remoteFile) const
    {
        QUrl url = m_directory;
        url.setPath(m_prefix + remoteFile.fileName(QUrl::FullyEncoded), QUrl::StrictMode);
        return url;
    }

private:
    QUrl m_directory;
    QString m_prefix;
};

NewTheme makeNewTheme(const RemoteTheme& remote, const DestinationMaker& destinations)
{
    const StoredTheme& stored = remote.theme;
    return NewTheme(stored.theme.identifier.name(), stored.theme.identifier.style(), stored.theme.authors,
                    stored.theme.version, CopyCommand{stored.url, destinations.destination(stored.url)});
}

std::optional<UpdatedTheme> makeUpdatedTheme(const RemoteTheme& remote, const LocalTheme& installed)
{
    const StoredTheme& source = remote.theme;
    const StoredTheme& target = installed.theme;
    // Strictly older only: an equal or newer installed version is never replaced (no downgrades).
    if (!(target.theme.version < source.theme.version))
        return std::nullopt;
    return UpdatedTheme(target.theme.identifier, source.theme.authors,
                        UpdatedTheme::VersionChange{target.theme.version, source.theme.version},
                        CopyCommand{source.url, target.url});
}

} // namespace

FindThemeDifferences::FindThemeDifferences(QUrl installedThemesDirectoryURL,
                                           std::shared_ptr<FetchesRemoteThemes> remoteThemeFetcher,
                                           std::shared_ptr<FetchesLocalThemes> localThemeFetcher)
    : m_installedThemesDirectoryURL(std::move(installedThemesDirectoryURL))
    , m_remoteThemeFetcher(std::move(remoteThemeFetcher))
    , m_localThemeFetcher(std::move(localThemeFetcher))
{
}

Result<QList<ThemeDifference>, ThemeDifferencesError> FindThemeDifferences::findDifferences() const
{
    auto remote = mapError(m_remoteThemeFetcher->fetchRemoteThemes(), [](RemoteThemeFetchingError error) {
        return ThemeDifferencesError(ThemeDifferencesError::RemoteFetchingFailed{std::move(error)});
    });
    auto both = fanout(std::move(remote), [this] {
        return mapError(m_localThemeFetcher->fetchLocalThemes(), [](LocalThemeFetchingError error) {
            return ThemeDifferencesError(ThemeDifferencesError::LocalFetchingFailed{std::move(error)});
        });
    });
    return map(std::move(both), [this](std::pair<QList<RemoteTheme>, QList<LocalTheme>> lists) {
        return differences(lists.first, lists.second);
    });
}

QList<ThemeDifference> FindThemeDifferences::differences(const QList<RemoteTheme>& remoteThemes,
                                                         const QList<LocalTheme>& localThemes) const
{
    // One index and one walk per group; the groups are the same as the two public steps give.
    const FirstInstalledIndex index(localThemes);
    const DestinationMaker destinations(m_installedThemesDirectoryURL);
    QList<ThemeDifference> result;
    result.reserve(remoteThemes.size());
    for (const RemoteTheme& remote : remoteThemes) {
        if (!index.firstMatch(remote))
            result.emplace_back(makeNewTheme(remote, destinations));
    }
    for (const RemoteTheme& remote : remoteThemes) {
        if (const LocalTheme* installed = index.firstMatch(remote)) {
            if (auto update = makeUpdatedTheme(remote, *installed))
                result.emplace_back(std::move(*update));
        }
    }
    return result;
}

QList<NewTheme> FindThemeDifferences::findNewThemes(const QList<RemoteTheme>& remoteThemes,
                                                    const QList<LocalTheme>& localThemes) const
{
    const FirstInstalledIndex index(localThemes);
    const DestinationMaker destinations(m_installedThemesDirectoryURL);
    QList<NewTheme> result;
    for (const RemoteTheme& remote : remoteThemes) {
        if (!index.firstMatch(remote))
            result.append(makeNewTheme(remote, destinations));
    }
    return result;
}

QList<UpdatedTheme> FindThemeDifferences::findUpdatedThemes(const QList<RemoteTheme>& remoteThemes,
                                                            const QList<LocalTheme>& localThemes) const
{
    const FirstInstalledIndex index(localThemes);
    QList<UpdatedTheme> result;
    for (const RemoteTheme& remote : remoteThemes) {
        if (const LocalTheme* installed = index.firstMatch(remote)) {
            if (auto update = makeUpdatedTheme(remote, *installed))
                result.append(std::move(*update));
        }
    }
    return result;
}

} // namespace corvane
