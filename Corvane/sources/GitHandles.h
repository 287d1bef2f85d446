// SPDX-License-Identifier: MIT
#pragma once

#include <git2.h>

#include <memory>

namespace corvane {

// Owning handles for the library's objects: each frees its object with the library's own function.
template <class T, void (*Free)(T*)>
struct GitDeleter {
    void operator()(T* object) const noexcept { Free(object); }
};

template <class T, void (*Free)(T*)>
using GitHandle = std::unique_ptr<T, GitDeleter<T, Free>>;

using RepositoryHandle = GitHandle<git_repository, git_repository_free>;
using RemoteHandle = GitHandle<git_remote, git_remote_free>;
using ReferenceHandle = GitHandle<git_reference, git_reference_free>;
using CommitHandle = GitHandle<git_commit, git_commit_free>;
using ConfigHandle = GitHandle<git_config, git_config_free>;
using TreeHandle = GitHandle<git_tree, git_tree_free>;
using TreeEntryHandle = GitHandle<git_tree_entry, git_tree_entry_free>;

// The buffers the library fills are freed with their own function; the struct itself lives on the stack.
struct GitBuffer {
    git_buf buffer = GIT_BUF_INIT;
    GitBuffer() = default;
    GitBuffer(const GitBuffer&) = delete;
    GitBuffer& operator=(const GitBuffer&) = delete;
    ~GitBuffer() { git_buf_dispose(&buffer); }
};

} // namespace corvane
