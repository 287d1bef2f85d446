// SPDX-License-Identifier: MIT
#include "Corvane/presentation/SkippedVersions.h"

#include <QSettings>

#include <algorithm>

namespace corvane {
namespace {

const QString group = QStringLiteral("Corvane");
const QString array = QStringLiteral("skippedVersions");

} // namespace

SkippedVersions SkippedVersions::load(QSettings& settings)
{
    SkippedVersions skipped;
    settings.beginGroup(group);
    const int size = settings.beginReadArray(array);
    for (int index = 0; index < size; ++index) {
        settings.setArrayIndex(index);
        const QString name = settings.value(QStringLiteral("name")).toString();
        const QString style = settings.value(QStringLiteral("style")).toString();
        // An entry edited by hand into something unreadable skips nothing rather than everything.
        const auto version = Version::fromString(settings.value(QStringLiteral("version")).toString());
        if (name.isEmpty() || style.isEmpty() || !version)
            continue;
        const QString themeKey = key(name, style);
        const auto known = skipped.m_versions.constFind(themeKey);
        if (known == skipped.m_versions.cend() || *known < *version)
            skipped.m_versions.insert(themeKey, *version);
    }
    settings.endArray();
    settings.endGroup();
    return skipped;
}

void SkippedVersions::save(QSettings& settings) const
{
    // Sorted, so the file changes only where a skip changed.
    QStringList keys = m_versions.keys();
    std::sort(keys.begin(), keys.end());
    settings.beginGroup(group);
    settings.remove(array);
    settings.beginWriteArray(array, int(keys.size()));
    for (int index = 0; index < keys.size(); ++index) {
        settings.setArrayIndex(index);
        const qsizetype split = keys[index].lastIndexOf(u'\n');
        settings.setValue(QStringLiteral("name"), keys[index].left(split));
        settings.setValue(QStringLiteral("style"), keys[index].mid(split + 1));
        settings.setValue(QStringLiteral("version"), m_versions.constFind(keys[index])->toString());
    }
    settings.endArray();
    settings.endGroup();
}

bool SkippedVersions::skips(const ThemeEntry& entry) const
{
    if (m_versions.isEmpty())
        return false;
    const auto skipped = m_versions.constFind(key(entry.name, entry.styleKey));
    if (skipped == m_versions.cend())
        return false;
    const auto offered = Version::fromString(entry.remoteVersion);
    return offered && *offered <= *skipped;
}

void SkippedVersions::skip(const ThemeEntry& entry)
{
    if (const auto version = Version::fromString(entry.remoteVersion))
        m_versions.insert(key(entry.name, entry.styleKey), *version);
}

void SkippedVersions::unskip(const ThemeEntry& entry)
{
    m_versions.remove(key(entry.name, entry.styleKey));
}

} // namespace corvane
