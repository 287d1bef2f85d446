// SPDX-License-Identifier: MIT
#include "Corvane/sources/RemoteLookup.h"

#include "Corvane/sources/GitHandles.h"
#include "Corvane/sources/GitLibrary.h"

#include <QList>

namespace corvane {
namespace {

using ConfigIteratorHandle = GitHandle<git_config_iterator, git_config_iterator_free>;

int collectRefspec(const git_config_entry* entry, void* payload)
{
    static_cast<QList<QByteArray>*>(payload)->append(QByteArray(entry->value));
    return 0;
}

} // namespace

QByteArray RemoteLookup::applyInsteadOf(git_config* config, const QByteArray& url)
{
    // Every entry is looked at by name here, with no regular expression.
    git_config_iterator* rawIterator = nullptr;
    if (git_config_iterator_new(&rawIterator, config) < 0) {
        git_error_clear();
        return url;
    }
    ConfigIteratorHandle iterator(rawIterator);
    QByteArray base, longest;
    git_config_entry* entry = nullptr;
    while (git_config_next(&entry, iterator.get()) == 0) {
        const QByteArray name(entry->name);
        // Names come lower-cased in their first and last part: url.<base>.insteadof
        if (!name.startsWith("url.") || !name.endsWith(".insteadof") || !entry->value)
            continue;
        const QByteArray prefix(entry->value);
        if (!prefix.isEmpty() && url.startsWith(prefix) && prefix.size() > longest.size()) {
            longest = prefix;
            base = name.mid(4, name.size() - 4 - qsizetype(sizeof(".insteadof") - 1));
        }
    }
    git_error_clear();
    return longest.isEmpty() ? url : base + url.mid(longest.size());
}

Result<Remote, GitError> RemoteLookup::find(git_repository* repository, const QString& name)
{
    git_config* rawConfig = nullptr;
    if (const int code = git_repository_config_snapshot(&rawConfig, repository); code < 0)
        return std::unexpected(makeGitError(code));
    ConfigHandle config(rawConfig);

    const QByteArray section = "remote." + name.toUtf8();
    GitBuffer url;
    if (const int code = git_config_get_string_buf(&url.buffer, config.get(), (section + ".url").constData()); code < 0) {
        if (code == GIT_ENOTFOUND)
            git_error_set_str(GIT_ERROR_CONFIG, ("remote '" + name.toUtf8() + "' does not exist").constData());
        return std::unexpected(makeGitError(code));
    }
    QList<QByteArray> refspecs;
    const int listed = git_config_get_multivar_foreach(config.get(), (section + ".fetch").constData(), nullptr, collectRefspec, &refspecs);
    if (listed < 0 && listed != GIT_ENOTFOUND)
        return std::unexpected(makeGitError(listed));
    git_error_clear();
    if (refspecs.isEmpty())
        refspecs << "+refs/heads/*:refs/remotes/" + name.toUtf8() + "/*";

    const QByteArray rewritten = applyInsteadOf(config.get(), QByteArray(url.buffer.ptr, qsizetype(url.buffer.size)));
    git_remote_create_options options = GIT_REMOTE_CREATE_OPTIONS_INIT;
    options.repository = repository;
    options.flags = GIT_REMOTE_CREATE_SKIP_INSTEADOF | GIT_REMOTE_CREATE_SKIP_DEFAULT_FETCHSPEC;
    git_remote* raw = nullptr;
    if (const int code = git_remote_create_with_opts(&raw, rewritten.constData(), &options); code < 0)
        return std::unexpected(makeGitError(code));
    return Remote(RemoteHandle(raw), name.toUtf8(), std::move(refspecs));
}

} // namespace corvane
