// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/SkippedVersions.h"
#include "Corvane/presentation/ThemeEntry.h"

#include <QAbstractListModel>
#include <QList>

#include <functional>

Q_DECLARE_METATYPE(corvane::ThemeEntry)

namespace corvane {

// The rows the updater list shows. The list is replaced as a whole; every replacement resets the
// model, and the table reloads from it. A find text narrows the rows to those whose name or authors
// hold it; without one, every row is shown. Versions the user skipped are left out unless skipped
// rows are asked for.
//
// The rows come in two sections, new themes and then updates, each under a header row that counts
// the themes shown below it ("New (2)"); a section with no row shown has no header. Entries are
// numbered without the headers: entries().at(entryIndex(row)).
class ThemeTableModel final : public QAbstractListModel {
    Q_OBJECT

public:
    // The row's whole ThemeEntry, for the cell that shows it; nothing for a header.
    static constexpr int EntryRole = Qt::UserRole + 1;
    // True for a section header.
    static constexpr int HeaderRole = Qt::UserRole + 2;

    using QAbstractListModel::QAbstractListModel;

    // The themes shown, in display order (new themes first).
    const QList<ThemeEntry>& entries() const { return m_shown; }
    // Every row, whatever the find text and the skips.
    const QList<ThemeEntry>& allEntries() const { return m_entries; }
    void setEntries(QList<ThemeEntry> entries);

    // Case-insensitive, anywhere in the name or the authors; empty shows every row.
    void setFindText(const QString& text);
    const QString& findText() const { return m_findText; }
    bool isFiltered() const { return !m_findText.isEmpty(); }

    void setSkippedVersions(SkippedVersions skipped);
    const SkippedVersions& skippedVersions() const { return m_skipped; }
    // Whether rows of skipped versions are shown too.
    void setShowsSkipped(bool shows);
    bool showsSkipped() const { return m_showsSkipped; }
    bool isSkipped(const ThemeEntry& entry) const { return m_skipped.skips(entry); }
    // How many rows are skipped, whatever the find text.
    qsizetype skippedCount() const { return m_skippedCount; }
    // The themes Update All acts on: those shown, less any skipped one shown.
    QList<ThemeEntry> actionableEntries() const;
    // The themes waiting, whatever the find text: every row less the skipped ones.
    qsizetype waitingCount() const { return m_entries.size() - m_skippedCount; }

    // The entry a row shows, or -1 for a header; and the row an entry is shown in.
    int entryIndex(int row) const;
    int rowOfEntry(int entryIndex) const;
    bool isHeader(int row) const { return row >= 0 && row < rowCount() && entryIndex(row) < 0; }
    // "New (2)" or "Updates (3)", counting the rows shown.
    QString headerTitle(int row) const;
    qsizetype newCount() const { return m_newCount; }
    qsizetype updateCount() const { return m_shown.size() - m_newCount; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    void markSkipped();
    void narrow();
    void reset(const std::function<void()>& change);
    int updatesHeaderRow() const { return m_newCount > 0 ? int(m_newCount) + 1 : 0; }

    QList<ThemeEntry> m_entries;
    QList<ThemeEntry> m_shown;
    qsizetype m_newCount = 0;
    qsizetype m_skippedCount = 0;
    QList<bool> m_skippedRows; // by index into m_entries; empty when nothing is skipped
    QString m_findText;
    SkippedVersions m_skipped;
    bool m_showsSkipped = false;
};

} // namespace corvane
