// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include "Corvane/Version/Version.h"
#include "Corvane/presentation/ThemeEntry.h"

#include <QHash>
#include <QString>

class QSettings;

namespace corvane {

// The versions the user chose to skip, one per theme (name and style). A row stays hidden while the
// repository offers that version or an older one; a newer version shows it again. Kept in the
// host's settings, group "Corvane", as the array "skippedVersions" of name, style and version.
class CORVANE_EXPORT SkippedVersions {
public:
    static SkippedVersions load(QSettings& settings);
    void save(QSettings& settings) const;

    // Whether the row's repository version is one the user skipped.
    bool skips(const ThemeEntry& entry) const;
    // Skips the row's repository version (replacing an older skip of the same theme).
    void skip(const ThemeEntry& entry);
    // Shows the row's theme again, whatever version was skipped.
    void unskip(const ThemeEntry& entry);

    bool isEmpty() const { return m_versions.isEmpty(); }
    qsizetype size() const { return m_versions.size(); }
    bool operator==(const SkippedVersions&) const = default;

private:
    static QString key(const QString& name, const QString& style) { return name + u'\n' + style; }

    // name + newline + style → the version skipped
    QHash<QString, Version> m_versions;
};

} // namespace corvane
