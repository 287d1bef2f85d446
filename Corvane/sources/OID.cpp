// SPDX-License-Identifier: MIT
#include "Corvane/sources/OID.h"

#include "Corvane/sources/GitLibrary.h"

#include <git2/errors.h>

namespace corvane {

std::optional<OID> OID::fromString(const QString& text)
{
    // git_oid_fromstrn would accept a prefix and pad it with zeros; an abbreviated id is no id here.
    if (text.size() != GIT_OID_HEXSZ)
        return std::nullopt;
    for (const QChar c : text) {
        if (!(c >= u'0' && c <= u'9') && !(c >= u'a' && c <= u'f') && !(c >= u'A' && c <= u'F'))
            return std::nullopt;
    }
    GitLibrary::ensureInitialized();
    git_oid oid;
    const QByteArray hex = text.toLatin1();
    if (git_oid_fromstrn(&oid, hex.constData(), size_t(hex.size())) < 0) {
        git_error_clear();
        return std::nullopt;
    }
    return OID(oid);
}

QString OID::description() const
{
    char hex[GIT_OID_HEXSZ + 1];
    git_oid_tostr(hex, sizeof hex, &m_oid);
    return QString::fromLatin1(hex, GIT_OID_HEXSZ);
}

bool OID::operator==(const OID& other) const
{
    return git_oid_equal(&m_oid, &other.m_oid) != 0;
}

} // namespace corvane
