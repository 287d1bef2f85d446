// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/RemoteAccess.h"
#include "Corvane/module/Result.h"
#include "Corvane/sources/Commit.h"
#include "Corvane/sources/GitError.h"
#include "Corvane/sources/GitHandles.h"
#include "Corvane/sources/OID.h"
#include "Corvane/sources/Reference.h"
#include "Corvane/sources/Remote.h"
#include "Corvane/sources/SynchronizationProgress.h"

#include <QStringList>
#include <QUrl>

#include <memory>
#include <optional>

namespace corvane {

enum class CheckoutStrategy {
    safe,  // files changed in the working tree are not overwritten
    force, // the working tree is made to match the target, overwriting changes
    none,  // nothing is written to the working tree
};

// An opened repository: the few operations of libgit2 the module needs, each checked, each giving its
// value or the one GitError made at the failing call. Fetches and clones never wait forever (see
// TransferWatch). Move-only; the handle is freed with the object.
class Repository {
public:
    // Whether a repository opens at exactly that directory (parents are not searched). Fails only when
    // the question cannot be answered.
    static Result<bool, GitError> isValid(const QUrl& directory);
    static Result<Repository, GitError> at(const QUrl& directory);
    // Clones through the proxy git's configuration or the environment names. A user and password in
    // from authenticate the transfer, then access; the new repository's "origin" stores from without
    // them. The new repository refuses symbolic links before its first checkout.
    // Objects received and files checked out are reported to progress as they advance.
    static Result<Repository, GitError> clone(const QUrl& from, const QUrl& to, bool localClone, bool bare,
                                              CheckoutStrategy checkoutStrategy, const RemoteAccess& access = {},
                                              const ReportsSynchronizationProgress& progress = {});

    Result<Remote, GitError> remote(const QString& name) const;
    // Fetches with the remote's configured refspecs through the proxy git's configuration or the
    // environment names, authenticating with the user and password of credentialsFrom (the remote as
    // configured, when its stored URL carries none), then access.
    Result<void, GitError> fetch(const Remote& remote, const RemoteAccess& access = {},
                                 const QUrl& credentialsFrom = {},
                                 const ReportsSynchronizationProgress& progress = {}) const;
    // The URL a configured remote stores, as written (no insteadOf rules applied).
    Result<QString, GitError> storedRemoteUrl(const QString& name) const;
    // Makes the configured remote fetch from url from now on.
    Result<void, GitError> setRemoteUrl(const QString& name, const QUrl& url) const;
    // A remote-tracking branch by its short name, such as "origin/master".
    Result<Reference, GitError> remoteBranch(const QString& name) const;
    // Points HEAD at the reference (detached for a remote-tracking branch), then checks HEAD out.
    Result<void, GitError> checkout(const Reference& reference, CheckoutStrategy strategy,
                                    const ReportsSynchronizationProgress& progress = {}) const;
    Result<Reference, GitError> HEAD() const;
    Result<Commit, GitError> commit(const OID& oid) const;

    // The working directory; absent for a bare repository.
    std::optional<QUrl> directoryURL() const;

    // Sets core.symlinks=false in this repository's own configuration (never the user's or the
    // process's), so later checkouts write links as plain files holding the link's target.
    Result<void, GitError> refuseSymbolicLinks() const;

    // The paths, relative to the top of the tree at HEAD, of symbolic links among the entries named
    // directory itself and its direct entries whose names end with suffix.
    Result<QStringList, GitError> symbolicLinksAtHead(const QString& directory, const QString& suffix) const;

    git_repository* raw() const { return m_handle.get(); }

    // Something that must live exactly as long as this handle (the clone's lock).
    void keepAlive(std::shared_ptr<void> companion) { m_companion = std::move(companion); }

private:
    explicit Repository(RepositoryHandle handle) : m_handle(std::move(handle)) {}

    // Declared first so it outlives the handle: the lock is let go only after the repository is closed.
    std::shared_ptr<void> m_companion;
    RepositoryHandle m_handle;
};

} // namespace corvane
