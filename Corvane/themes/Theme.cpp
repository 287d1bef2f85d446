// SPDX-License-Identifier: MIT
#include "Corvane/themes/Theme.h"

#include <QHash>

#include <algorithm>

namespace corvane {

Theme::Identifier::Identifier(QString name, Style style)
    : m_name(std::move(name)), m_canonicalName(m_name.normalized(QString::NormalizationForm_C)), m_style(style)
{
}

bool Theme::operator==(const Theme& other) const
{
    return identifier == other.identifier && version == other.version && authors.size() == other.authors.size()
        && std::equal(authors.cbegin(), authors.cend(), other.authors.cbegin(), [](const QString& a, const QString& b) {
               // Author names follow the same rule as theme names: canonically equivalent texts are equal.
               return a == b
                   || a.normalized(QString::NormalizationForm_C) == b.normalized(QString::NormalizationForm_C);
           });
}

std::size_t qHash(const Theme::Identifier& identifier, std::size_t hashSeed) noexcept
{
    return qHashMulti(hashSeed, identifier.canonicalName(), static_cast<int>(identifier.style()));
}

} // namespace corvane
