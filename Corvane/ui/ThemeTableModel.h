// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/ThemeEntry.h"

#include <QAbstractListModel>
#include <QList>

Q_DECLARE_METATYPE(corvane::ThemeEntry)

namespace corvane {

// The rows the updater list shows. The list is replaced as a whole; every replacement resets the
// model, and the table reloads from it.
class ThemeTableModel final : public QAbstractListModel {
    Q_OBJECT

public:
    // The row's whole ThemeEntry, for the cell that shows it.
    static constexpr int EntryRole = Qt::UserRole + 1;

    using QAbstractListModel::QAbstractListModel;

    const QList<ThemeEntry>& entries() const { return m_entries; }
    void setEntries(QList<ThemeEntry> entries);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    QList<ThemeEntry> m_entries;
};

} // namespace corvane
