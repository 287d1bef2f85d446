// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/ThemeEntry.h"

#include <QAbstractListModel>
#include <QList>

Q_DECLARE_METATYPE(corvane::ThemeEntry)

namespace corvane {

// The rows the updater list shows. The list is replaced as a whole; every replacement resets the
// model, and the table reloads from it. A find text narrows the rows to those whose name or authors
// hold it; without one, every row is shown.
class ThemeTableModel final : public QAbstractListModel {
    Q_OBJECT

public:
    // The row's whole ThemeEntry, for the cell that shows it.
    static constexpr int EntryRole = Qt::UserRole + 1;

    using QAbstractListModel::QAbstractListModel;

    // The rows shown, in order.
    const QList<ThemeEntry>& entries() const { return m_shown; }
    // Every row, whatever the find text.
    const QList<ThemeEntry>& allEntries() const { return m_entries; }
    void setEntries(QList<ThemeEntry> entries);

    // Case-insensitive, anywhere in the name or the authors; empty shows every row.
    void setFindText(const QString& text);
    const QString& findText() const { return m_findText; }
    bool isFiltered() const { return !m_findText.isEmpty(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    void narrow();

    QList<ThemeEntry> m_entries;
    QList<ThemeEntry> m_shown;
    QString m_findText;
};

} // namespace corvane
