// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemeTableModel.h"

namespace corvane {

void ThemeTableModel::setEntries(QList<ThemeEntry> entries)
{
    beginResetModel();
    m_entries = std::move(entries);
    endResetModel();
}

int ThemeTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

QVariant ThemeTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_entries.size())
        return {};
    const ThemeEntry& entry = m_entries.at(index.row());
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
