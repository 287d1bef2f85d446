// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/Version/Version.h"

#include <QString>
#include <QStringList>

#include <cstddef>

namespace corvane {

// One theme as its file describes it: which theme it is, who made it and which version it is.
struct Theme {
    enum class Style { dark, light };

    // Two themes with equal identifiers are the same theme, whatever their versions. Names are equal
    // when they are canonically equivalent (case matters), so the composed form is kept beside the
    // name as written: comparing and hashing never normalise again.
    class Identifier {
    public:
        Identifier(QString name, Style style);

        const QString& name() const { return m_name; }
        Style style() const { return m_style; }
        // The name in Unicode normalisation form C: what equality, hashing and sorting use.
        const QString& canonicalName() const { return m_canonicalName; }

        bool operator==(const Identifier& other) const
        {
            return m_style == other.m_style && m_canonicalName == other.m_canonicalName;
        }

    private:
        QString m_name;
        QString m_canonicalName;
        Style m_style;
    };

    Identifier identifier;
    QStringList authors;
    Version version;

    // Same name (canonically), style, version and authors in the same order.
    bool operator==(const Theme& other) const;
};

// Hashing that agrees with identifier equality, for indexes over installed themes.
std::size_t qHash(const Theme::Identifier& identifier, std::size_t hashSeed = 0) noexcept;

} // namespace corvane
