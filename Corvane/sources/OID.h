// SPDX-License-Identifier: MIT
#pragma once

#include <git2/oid.h>

#include <QString>

#include <optional>

namespace corvane {

// A 20-byte git object id.
class OID {
public:
    explicit OID(const git_oid& oid) : m_oid(oid) {}

    // Exactly 40 hexadecimal digits, either case; anything else (empty, shorter, longer, other
    // characters) is no id.
    static std::optional<OID> fromString(const QString& text);

    const git_oid& raw() const { return m_oid; }

    // 40 lower-case hexadecimal digits.
    QString description() const;

    // All 20 bytes.
    bool operator==(const OID& other) const;

private:
    git_oid m_oid;
};

} // namespace corvane
