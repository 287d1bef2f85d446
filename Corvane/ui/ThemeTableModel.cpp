// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemeTableModel.h"

namespace corvane {

void ThemeTableModel::setEntries(QList<ThemeEntry> entries)
{
    beginResetModel();
    m_entries = std::move(entries);
    narrow();
    endResetModel();
}

void ThemeTableModel::setFindText(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed == m_findText)
        return;
    beginResetModel();
    m_findText = trimmed;
    narrow();
    endResetModel();
}

void ThemeTableModel::narrow()
{
    if (m_findText.isEmpty()) {
        m_shown = m_entries; // shares the list
        return;
    }
    m_shown.clear();
    for (const ThemeEntry& entry : std::as_const(m_entries)) {
        if (entry.name.contains(m_findText, Qt::CaseInsensitive) || entry.authors.contains(m_findText, Qt::CaseInsensitive))
            m_shown.append(entry);
    }
}

int ThemeTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_shown.size());
}

QVariant ThemeTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_shown.size())
        return {};
    const ThemeEntry& entry = m_shown.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return entry.name;
    case EntryRole:
        return QVariant::fromValue(entry);
    default:
        return {};
    }
}

} // namespace corvane
