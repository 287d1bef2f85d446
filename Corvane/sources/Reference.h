// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitHandles.h"
#include "Corvane/sources/OID.h"

#include <QString>

namespace corvane {

// A direct reference (HEAD resolved, or a branch) and the id it points at.
class Reference {
public:
    explicit Reference(ReferenceHandle handle) : m_handle(std::move(handle)) {}

    git_reference* raw() const { return m_handle.get(); }
    // The full name, such as "refs/remotes/origin/master".
    QString name() const { return QString::fromUtf8(git_reference_name(m_handle.get())); }
    OID oid() const { return OID(*git_reference_target(m_handle.get())); }

private:
    ReferenceHandle m_handle;
};

} // namespace corvane
