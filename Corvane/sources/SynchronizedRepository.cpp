// SPDX-License-Identifier: MIT
#include "Corvane/sources/SynchronizedRepository.h"

#include "Corvane/sources/CheckoutPreparation.h"
#include "Corvane/sources/CloneLock.h"
#include "Corvane/sources/IndexStatusScan.h"
#include "Corvane/sources/IntactCheckout.h"
#include "Corvane/sources/RemoteAuthentication.h"
#include "Corvane/sources/SpecialFileSweep.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace corvane {
namespace {

Result<Repository, GitError> obtain(const QUrl& localURL, const QUrl& remoteURL, const RemoteAccess& access,
                                    const ReportsSynchronizationProgress& progress)
{
    // libgit2 opens the repository's own files with blocking opens: a pipe among them must not hang it.
    if (const QFileInfo gitDirectory(QDir(localURL.toLocalFile()).filePath(QStringLiteral(".git")));
        gitDirectory.exists() || gitDirectory.isSymLink())
        SpecialFileSweep::clearBelow(gitDirectory.filePath());
    return flatMap(Repository::isValid(localURL), [&](bool isValid) -> Result<Repository, GitError> {
        // The working tree is written by the checkout that follows, once the commit has been looked at.
        if (!isValid)
            return Repository::clone(remoteURL, localURL, false, false, CheckoutStrategy::none, access, progress);
        auto repository = Repository::at(localURL);
        // A clone made before links were refused, or by someone else, refuses them from now on.
        if (repository) {
            if (auto refused = repository->refuseSymbolicLinks(); !refused)
                return std::unexpected(refused.error());
        }
        return repository;
    });
}

// A host that moved its repository, or a clone that still stores a password in its URL: "origin" is
// pointed at the configured remote, without user information, before anything is fetched.
Result<void, GitError> repointOrigin(const Repository& repository, const QUrl& remoteURL)
{
    const QUrl wanted = RemoteAuthentication::withoutUserInfo(remoteURL);
    auto stored = repository.storedRemoteUrl(QStringLiteral("origin"));
    if (!stored) // no "origin" at all: the lookup that follows reports it
        return {};
    if (*stored == wanted.toString(QUrl::FullyEncoded))
        return {};
    return repository.setRemoteUrl(QStringLiteral("origin"), wanted);
}

Result<void, GitError> update(const Repository& repository, const QUrl& remoteURL, const QString& branchName,
                              const RemoteAccess& access, const ReportsSynchronizationProgress& progress,
                              IndexStatusScan* scan)
{
    if (auto repointed = repointOrigin(repository, remoteURL); !repointed)
        return repointed;
    auto origin = repository.remote(QStringLiteral("origin"));
    if (!origin)
        return std::unexpected(origin.error());
    if (auto fetched = repository.fetch(*origin, access, remoteURL, progress); !fetched)
        return fetched;
    auto branch = repository.remoteBranch(QStringLiteral("origin/") + branchName);
    if (!branch)
        return std::unexpected(branch.error());
    // Most synchronisations find the remote unchanged and nobody editing the clone: then the forced
    // checkout, which rewrites the index after looking at every file, would change nothing, and the
    // commit was prepared before it was first checked out.
    auto intact = IntactCheckout::holds(repository.raw(), branch->oid().raw(), scan);
    if (!intact)
        return std::unexpected(intact.error());
    if (*intact)
        return {};
    if (auto prepared = CheckoutPreparation::prepare(repository.raw(), branch->oid().raw(), QStringLiteral("Themes"),
                                                     QStringLiteral(".theme.json"));
        !prepared)
        return prepared;
    return repository.checkout(*branch, CheckoutStrategy::force, progress);
}

} // namespace

Result<Repository, GitError> SynchronizedRepository::synchronize() const
{
    auto lock = CloneLock::acquire(m_localURL);
    if (!lock)
        return std::unexpected(lock.error());
    // The transfers and the checkout below keep the clone ours while they make progress.
    const CloneLock::WorkingOnThisThread working(**lock);
    // Looking at every tracked file is most of a synchronisation that finds nothing new; it starts
    // now, beside libgit2's start-up and the fetch, and is used only if the index stays as it was.
    IndexStatusScan scan(QFile::encodeName(QDir::cleanPath(m_localURL.toLocalFile())));
    return flatMap(obtain(m_localURL, m_remoteURL, m_access, m_progress), [&](Repository repository) -> Result<Repository, GitError> {
        repository.keepAlive(*lock);
        if (auto updated = update(repository, m_remoteURL, m_branch, m_access, m_progress, &scan); !updated)
            return std::unexpected(updated.error());
        return repository;
    });
}

} // namespace corvane
