// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemeTableModel.h"

#include "Corvane/module/Localized.h"

#include <QLocale>

namespace corvane {

void ThemeTableModel::reset(const std::function<void()>& change)
{
    beginResetModel();
    change();
    narrow();
    endResetModel();
}

void ThemeTableModel::setEntries(QList<ThemeEntry> entries)
{
    reset([&] {
        m_entries = std::move(entries);
        markSkipped();
    });
}

void ThemeTableModel::setFindText(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed == m_findText)
        return;
    reset([&] { m_findText = trimmed; });
}

void ThemeTableModel::setSkippedVersions(SkippedVersions skipped)
{
    reset([&] {
        m_skipped = std::move(skipped);
        markSkipped();
    });
}

void ThemeTableModel::setShowsSkipped(bool shows)
{
    if (shows == m_showsSkipped)
        return;
    reset([&] { m_showsSkipped = shows; });
}

void ThemeTableModel::markSkipped()
{
    // Once per new list or new skips, not per keystroke of a find text.
    m_skippedRows.clear();
    m_skippedCount = 0;
    if (m_skipped.isEmpty())
        return;
    m_skippedRows.resize(m_entries.size());
    for (qsizetype index = 0; index < m_entries.size(); ++index) {
        m_skippedRows[index] = m_skipped.skips(m_entries.at(index));
        m_skippedCount += m_skippedRows[index] ? 1 : 0;
    }
}

void ThemeTableModel::narrow()
{
    const bool hidesSkipped = m_skippedCount > 0 && !m_showsSkipped;
    // The comparison yields new themes first; should a list come mixed, each section still keeps
    // its rows in the order given.
    QList<ThemeEntry> updates;
    m_shown.clear();
    for (qsizetype index = 0; index < m_entries.size(); ++index) {
        const ThemeEntry& entry = m_entries.at(index);
        if (hidesSkipped && m_skippedRows.at(index))
            continue;
        if (!m_findText.isEmpty() && !entry.name.contains(m_findText, Qt::CaseInsensitive)
            && !entry.authors.contains(m_findText, Qt::CaseInsensitive))
            continue;
        (entry.installedVersion ? updates : m_shown).append(entry);
    }
    m_newCount = m_shown.size();
    m_shown.append(updates);
}

QList<ThemeEntry> ThemeTableModel::actionableEntries() const
{
    if (m_skippedCount == 0 || !m_showsSkipped)
        return m_shown;
    QList<ThemeEntry> actionable;
    for (const ThemeEntry& entry : m_shown) {
        if (!m_skipped.skips(entry))
            actionable.append(entry);
    }
    return actionable;
}

int ThemeTableModel::entryIndex(int row) const
{
    if (m_newCount > 0) {
        if (row == 0)
            return -1;
        if (row <= m_newCount)
            return row - 1;
    }
    const int header = updatesHeaderRow();
    if (row <= header)
        return -1;
    return row - header - 1 + int(m_newCount);
}

int ThemeTableModel::rowOfEntry(int entryIndex) const
{
    if (entryIndex < m_newCount)
        return entryIndex + 1;
    return updatesHeaderRow() + 1 + entryIndex - int(m_newCount);
}

QString ThemeTableModel::headerTitle(int row) const
{
    const QString count = QLocale().toString(m_newCount > 0 && row == 0 ? m_newCount : updateCount());
    if (m_newCount > 0 && row == 0)
        //% "New (%1)"
        return fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.list.section-new"), "New (%1)"), {count});
    //% "Updates (%1)"
    return fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.list.section-updates"), "Updates (%1)"), {count});
}

int ThemeTableModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid())
        return 0;
    return int(m_shown.size()) + (m_newCount > 0 ? 1 : 0) + (updateCount() > 0 ? 1 : 0);
}

QVariant ThemeTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const int entry = entryIndex(index.row());
    if (entry < 0) {
        switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            return headerTitle(index.row());
        case HeaderRole:
            return true;
        default:
            return {};
        }
    }
    const ThemeEntry& shown = m_shown.at(entry);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shown.name;
    case EntryRole:
        return QVariant::fromValue(shown);
    case HeaderRole:
        return false;
    default:
        return {};
    }
}

} // namespace corvane
