// SPDX-License-Identifier: MIT
#include "Corvane/differences/FindThemeDifferences.h"

#include "Corvane/themes/DirectoryEntries.h"

#include <QHash>

#include <vector>

namespace corvane {
namespace {

// An identifier of the installed list, by reference: the index keys on it without copying names.
struct IdentifierRef {
    const Theme::Identifier* identifier;
    bool operator==(const IdentifierRef& other) const { return *identifier == *other.identifier; }
};

// Qt's keyed hash of the composed name and style: theme names come from a repository we do not
// control, and an unkeyed hash would let crafted names collide and turn the index back into a scan.
std::size_t qHash(const IdentifierRef& key, std::size_t hashSeed) noexcept
{
    return qHash(*key.identifier, hashSeed);
}

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
            const LocalTheme*& first = m_first[IdentifierRef{&local.theme.theme.identifier}];
            if (!first)
                first = &local;
        }
    }

    const LocalTheme* firstMatch(const RemoteTheme& remote) const
    {
        return m_first.value(IdentifierRef{&remote.theme.theme.identifier}, nullptr);
    }

private:
    QHash<IdentifierRef, const LocalTheme*> m_first;
};

// The path in the installed-themes directory of a theme file of the clone: the same file name.
class DestinationMaker {
public:
    explicit DestinationMaker(const QUrl& directory) : m_prefix(DirectoryEntries::pathPrefix(directory)) {}

    QString destination(const QString& remotePath) const
    {
        const QStringView fileName = QStringView(remotePath).mid(remotePath.lastIndexOf(u'/') + 1);
        QString path;
        path.reserve(m_prefix.size() + fileName.size());
        path.append(m_prefix).append(fileName);
        return path;
    }

private:
    QString m_prefix;
};

NewTheme makeNewTheme(const RemoteTheme& remote, const DestinationMaker& destinations)
{
    const StoredTheme& stored = remote.theme;
    return NewTheme(stored.theme.identifier.name(), stored.theme.identifier.style(), stored.theme.authors,
                    stored.theme.version,
                    CopyCommand{stored.path, destinations.destination(stored.path),
                                CopyCommand::SourceTheme{stored.theme.identifier, stored.theme.version}});
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
                        CopyCommand{source.path, target.path,
                                    CopyCommand::SourceTheme{source.theme.identifier, source.theme.version}});
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
    // One index, one lookup per remote theme, then one walk per group: the same groups the two
    // public steps give.
    const FirstInstalledIndex index(localThemes);
    std::vector<const LocalTheme*> firstMatches;
    firstMatches.reserve(std::size_t(remoteThemes.size()));
    for (const RemoteTheme& remote : remoteThemes)
        firstMatches.push_back(index.firstMatch(remote));

    const DestinationMaker destinations(m_installedThemesDirectoryURL);
    QList<ThemeDifference> result;
    result.reserve(remoteThemes.size());
    for (qsizetype i = 0; i < remoteThemes.size(); ++i) {
        if (!firstMatches[std::size_t(i)])
            result.emplace_back(makeNewTheme(remoteThemes[i], destinations));
    }
    for (qsizetype i = 0; i < remoteThemes.size(); ++i) {
        if (const LocalTheme* installed = firstMatches[std::size_t(i)]) {
            if (auto update = makeUpdatedTheme(remoteThemes[i], *installed))
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
