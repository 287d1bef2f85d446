// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitHandles.h"
#include "Corvane/sources/OID.h"

namespace corvane {

// A commit, found by id.
class Commit {
public:
    explicit Commit(CommitHandle handle) : m_handle(std::move(handle)) {}

    git_commit* raw() const { return m_handle.get(); }
    OID oid() const { return OID(*git_commit_id(m_handle.get())); }

private:
    CommitHandle m_handle;
};

} // namespace corvane
