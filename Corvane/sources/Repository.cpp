// SPDX-License-Identifier: MIT
#include "Corvane/sources/Repository.h"

#include "Corvane/sources/CloneLock.h"
#include "Corvane/sources/GitLibrary.h"
#include "Corvane/sources/RemoteAuthentication.h"
#include "Corvane/sources/RemoteLookup.h"
#include "Corvane/sources/TransferWatch.h"

#include <QDir>
#include <QFile>

#include <vector>

namespace corvane {
namespace {

QByteArray localPath(const QUrl& directory)
{
    return QFile::encodeName(QDir::cleanPath(directory.toLocalFile()));
}

QByteArray remoteLocation(const QUrl& url)
{
    return url.toString(QUrl::FullyEncoded).toUtf8();
}

unsigned int checkoutFlags(CheckoutStrategy strategy)
{
    switch (strategy) {
    case CheckoutStrategy::safe:
        return GIT_CHECKOUT_SAFE;
    case CheckoutStrategy::force:
        return GIT_CHECKOUT_FORCE;
    case CheckoutStrategy::none:
        break;
    }
    return GIT_CHECKOUT_NONE;
}

int setSymbolicLinksOff(git_repository* repository)
{
    git_config* raw = nullptr;
    if (const int code = git_repository_config(&raw, repository); code < 0)
        return code;
    ConfigHandle config(raw);
    // The repository's own file, never the user's or the system's.
    git_config* local = nullptr;
    if (const int code = git_config_open_level(&local, config.get(), GIT_CONFIG_LEVEL_LOCAL); code < 0)
        return code;
    ConfigHandle localConfig(local);
    int current = 1;
    if (git_config_get_bool(&current, localConfig.get(), "core.symlinks") == 0 && current == 0)
        return 0; // already so: leave the file alone
    git_error_clear();
    return git_config_set_bool(localConfig.get(), "core.symlinks", 0);
}

// Clones create their repository through this, so links are refused before the first checkout.
int createRepositoryWithoutLinks(git_repository** out, const char* path, int bare, void*)
{
    if (const int code = git_repository_init(out, path, unsigned(bare)); code < 0)
        return code;
    if (const int code = setSymbolicLinksOff(*out); code < 0) {
        git_repository_free(*out);
        *out = nullptr;
        return code;
    }
    return 0;
}

// Every file checked out is a sign of life for the clone's lock, and news for whoever watches.
void onCheckoutProgress(const char*, size_t completed, size_t total, void* payload)
{
    CloneLock::signOfLifeOnThisThread();
    const auto* progress = static_cast<const ReportsSynchronizationProgress*>(payload);
    if (progress && *progress && total > 0)
        (*progress)({SynchronizationProgress::Stage::checkingOut, qsizetype(completed), qsizetype(total), 0});
}

} // namespace

Result<bool, GitError> Repository::isValid(const QUrl& directory)
{
    GitLibrary::ensureInitialized();
    const int code = git_repository_open_ext(nullptr, localPath(directory).constData(),
                                             GIT_REPOSITORY_OPEN_NO_SEARCH, nullptr);
    if (code == 0)
        return true;
    if (code == GIT_ENOTFOUND) {
        git_error_clear();
        return false;
    }
    return std::unexpected(makeGitError(code));
}

Result<Repository, GitError> Repository::at(const QUrl& directory)
{
    GitLibrary::ensureInitialized();
    git_repository* raw = nullptr;
    if (const int code = git_repository_open(&raw, localPath(directory).constData()); code < 0)
        return std::unexpected(makeGitError(code));
    return Repository(RepositoryHandle(raw));
}

Result<Repository, GitError> Repository::clone(const QUrl& from, const QUrl& to, bool localClone, bool bare,
                                               CheckoutStrategy checkoutStrategy, const RemoteAccess& access,
                                               const ReportsSynchronizationProgress& progress)
{
    GitLibrary::ensureInitialized();
    git_clone_options options = GIT_CLONE_OPTIONS_INIT;
    options.bare = bare ? 1 : 0;
    options.local = localClone ? GIT_CLONE_LOCAL : GIT_CLONE_NO_LOCAL;
    options.checkout_opts.checkout_strategy = checkoutFlags(checkoutStrategy);
    options.repository_cb = createRepositoryWithoutLinks;
    options.checkout_opts.progress_cb = onCheckoutProgress;
    options.checkout_opts.progress_payload = const_cast<ReportsSynchronizationProgress*>(&progress);
    RemoteAuthentication authentication(from, access);
    TransferWatch watch(from, GitLibrary::transferLimits());
    watch.install(options.fetch_opts.callbacks, &authentication);
    watch.routeThroughProxy(options.fetch_opts.proxy_opts);
    watch.reportProgressTo(&progress);

    // The secret stays in memory: "origin" is written without it.
    git_repository* raw = nullptr;
    const int code = git_clone(&raw, remoteLocation(RemoteAuthentication::withoutUserInfo(from)).constData(),
                               localPath(to).constData(), &options);
    if (code < 0)
        return std::unexpected(watch.errorFor(code));
    return Repository(RepositoryHandle(raw));
}

Result<Remote, GitError> Repository::remote(const QString& name) const
{
    return RemoteLookup::find(m_handle.get(), name);
}

Result<void, GitError> Repository::fetch(const Remote& remote, const RemoteAccess& access,
                                        const QUrl& credentialsFrom, const ReportsSynchronizationProgress& progress) const
{
    git_fetch_options options = GIT_FETCH_OPTIONS_INIT;
    QUrl url = remote.url();
    if (url.userInfo().isEmpty() && !credentialsFrom.userInfo().isEmpty()) {
        url.setUserName(credentialsFrom.userName(QUrl::FullyDecoded), QUrl::DecodedMode);
        url.setPassword(credentialsFrom.password(QUrl::FullyDecoded), QUrl::DecodedMode);
    }
    RemoteAuthentication authentication(url, access);
    TransferWatch watch(url, GitLibrary::transferLimits());
    watch.install(options.callbacks, &authentication);
    watch.routeThroughProxy(options.proxy_opts, m_handle.get(), remote.name());
    watch.reportProgressTo(&progress);
    std::vector<char*> refspecs;
    for (const QByteArray& refspec : remote.fetchRefspecs())
        refspecs.push_back(const_cast<char*>(refspec.constData()));
    const git_strarray fetched{refspecs.data(), refspecs.size()};
    if (const int code = git_remote_fetch(remote.raw(), &fetched, &options, nullptr); code < 0)
        return std::unexpected(watch.errorFor(code));
    return {};
}

Result<QString, GitError> Repository::storedRemoteUrl(const QString& name) const
{
    git_config* rawConfig = nullptr;
    if (const int code = git_repository_config_snapshot(&rawConfig, m_handle.get()); code < 0)
        return std::unexpected(makeGitError(code));
    ConfigHandle config(rawConfig);
    GitBuffer url;
    const QByteArray key = "remote." + name.toUtf8() + ".url";
    if (const int code = git_config_get_string_buf(&url.buffer, config.get(), key.constData()); code < 0)
        return std::unexpected(makeGitError(code));
    return QString::fromUtf8(url.buffer.ptr, qsizetype(url.buffer.size));
}

Result<void, GitError> Repository::setRemoteUrl(const QString& name, const QUrl& url) const
{
    if (const int code = git_remote_set_url(m_handle.get(), name.toUtf8().constData(), remoteLocation(url).constData());
        code < 0)
        return std::unexpected(makeGitError(code));
    return {};
}

Result<Reference, GitError> Repository::remoteBranch(const QString& name) const
{
    git_reference* raw = nullptr;
    if (const int code = git_branch_lookup(&raw, m_handle.get(), name.toUtf8().constData(), GIT_BRANCH_REMOTE);
        code < 0)
        return std::unexpected(makeGitError(code));
    ReferenceHandle branch(raw);
    git_reference* resolved = nullptr;
    if (const int code = git_reference_resolve(&resolved, branch.get()); code < 0)
        return std::unexpected(makeGitError(code));
    return Reference(ReferenceHandle(resolved));
}

Result<void, GitError> Repository::checkout(const Reference& reference, CheckoutStrategy strategy,
                                           const ReportsSynchronizationProgress& progress) const
{
    if (const int code = git_repository_set_head(m_handle.get(), git_reference_name(reference.raw())); code < 0)
        return std::unexpected(makeGitError(code));
    git_checkout_options options = GIT_CHECKOUT_OPTIONS_INIT;
    options.checkout_strategy = checkoutFlags(strategy);
    options.progress_cb = onCheckoutProgress;
    options.progress_payload = const_cast<ReportsSynchronizationProgress*>(&progress);
    if (const int code = git_checkout_head(m_handle.get(), &options); code < 0)
        return std::unexpected(makeGitError(code));
    return {};
}

Result<Reference, GitError> Repository::HEAD() const
{
    git_reference* raw = nullptr;
    if (const int code = git_repository_head(&raw, m_handle.get()); code < 0)
        return std::unexpected(makeGitError(code));
    return Reference(ReferenceHandle(raw));
}

Result<Commit, GitError> Repository::commit(const OID& oid) const
{
    git_commit* raw = nullptr;
    if (const int code = git_commit_lookup(&raw, m_handle.get(), &oid.raw()); code < 0)
        return std::unexpected(makeGitError(code));
    return Commit(CommitHandle(raw));
}

std::optional<QUrl> Repository::directoryURL() const
{
    const char* workdir = git_repository_workdir(m_handle.get());
    if (!workdir)
        return std::nullopt;
    return QUrl::fromLocalFile(QDir::cleanPath(QFile::decodeName(workdir)));
}

Result<void, GitError> Repository::refuseSymbolicLinks() const
{
    if (const int code = setSymbolicLinksOff(m_handle.get()); code < 0)
        return std::unexpected(makeGitError(code));
    return {};
}

Result<QStringList, GitError> Repository::symbolicLinksAtHead(const QString& directory, const QString& suffix) const
{
    auto head = HEAD();
    if (!head)
        return std::unexpected(head.error());
    auto headCommit = commit(head->oid());
    if (!headCommit)
        return std::unexpected(headCommit.error());
    git_tree* rawTree = nullptr;
    if (const int code = git_commit_tree(&rawTree, headCommit->raw()); code < 0)
        return std::unexpected(makeGitError(code));
    TreeHandle tree(rawTree);

    QStringList links;
    git_tree_entry* rawEntry = nullptr;
    const int found = git_tree_entry_bypath(&rawEntry, tree.get(), directory.toUtf8().constData());
    if (found == GIT_ENOTFOUND) {
        git_error_clear();
        return links;
    }
    if (found < 0)
        return std::unexpected(makeGitError(found));
    TreeEntryHandle entry(rawEntry);
    if (git_tree_entry_filemode(entry.get()) == GIT_FILEMODE_LINK) {
        links << directory;
        return links;
    }
    if (git_tree_entry_type(entry.get()) != GIT_OBJECT_TREE)
        return links;

    git_tree* rawSubtree = nullptr;
    if (const int code = git_tree_lookup(&rawSubtree, m_handle.get(), git_tree_entry_id(entry.get())); code < 0)
        return std::unexpected(makeGitError(code));
    TreeHandle subtree(rawSubtree);
    const QByteArray suffixBytes = suffix.toUtf8();
    const size_t count = git_tree_entrycount(subtree.get());
    for (size_t index = 0; index < count; ++index) {
        const git_tree_entry* child = git_tree_entry_byindex(subtree.get(), index);
        if (git_tree_entry_filemode(child) != GIT_FILEMODE_LINK)
            continue;
        const QByteArray name(git_tree_entry_name(child));
        if (name.endsWith(suffixBytes))
            links << directory + u'/' + QString::fromUtf8(name);
    }
    return links;
}

} // namespace corvane
