// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QListView>

#include <functional>
#include <map>

namespace corvane {

// The theme list as a table with reusable cells. Only the rows on screen have a cell widget: as rows
// scroll out of sight their cells go back to a reuse queue and are handed out again, configured for
// the rows scrolling in. So ten thousand rows cost ten thousand small records and a screenful of
// widgets, and scrolling costs only the rows that appear.
class ThemeTableView : public QListView {
    Q_OBJECT

public:
    // Makes a new cell for an identifier; the table owns what it returns.
    using ViewFactory = std::function<QWidget*()>;
    // The data source's answer for a row: a configured cell from makeView, or none.
    using ViewProvider = std::function<QWidget*(ThemeTableView& table, int row)>;

    // The model's role that marks a row as a header of a section (true), drawn without row lines.
    static constexpr int HeaderRole = Qt::UserRole + 2;

    explicit ThemeTableView(QWidget* parent = nullptr);
    ~ThemeTableView() override;

    void registerView(const QString& identifier, ViewFactory factory);
    // A queued cell of that identifier, or a new one; none for an identifier never registered. A cell
    // taken here and not handed back through the provider returns to the queue at the next tiling.
    QWidget* makeView(const QString& identifier);

    void setViewProvider(ViewProvider provider);

    // Every row is this tall; the cells are laid out to it.
    void setRowHeight(int height);
    int rowHeight() const { return m_rowHeight; }

    int numberOfRows() const;
    // The first and last rows at least partly on screen; -1 without rows.
    int firstVisibleRow() const;
    int lastVisibleRow() const;

    // Asks the data source again for every row on screen.
    void reloadData();
    // Lays the rows out and places their cells now rather than at the next turn of the event loop.
    void layoutNow();

    // The cell showing a row, if the row is on screen.
    QWidget* cellForRow(int row) const;
    // The rows that have a cell now, in order.
    QList<int> rowsWithCells() const;
    // How many cells were ever made (the rest are reused).
    int cellsMade() const { return m_cellsMade; }

    // Scrolls the row into view and gives keyboard focus to its first (forward) or last focusable
    // widget. False when the row has none.
    bool focusRow(int row, Qt::FocusReason reason);
    // The same, moving on by `step` past rows with nothing to focus (section headers) as far as the
    // next row that has something; false when none does before the list ends.
    bool focusRowOrNext(int row, int step, Qt::FocusReason reason);
    // The row whose cell holds the keyboard focus, or -1.
    int focusedRow() const;

    void reset() override;
    void doItemsLayout() override;

signals:
    // Rows came on screen or went off it (after their cells were placed).
    void rowsOnScreenChanged();

protected:
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void updateGeometries() override;
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QList<int>& roles = QList<int>()) override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct VisibleRange {
        int first = -1;
        int last = -1;
        int firstTop = 0;
        int pitch = 0;
        int height = 0;
    };
    VisibleRange visibleRange() const;
    void tileCells();
    void recycleCell(QWidget* cell);
    void recycleAllCells();
    int rowOfWidget(const QWidget* widget) const;

    QHash<QString, ViewFactory> m_factories;
    QHash<QString, QList<QWidget*>> m_reuseQueues;
    QHash<const QWidget*, QString> m_identifiers;
    QList<QWidget*> m_handedOut; // taken from makeView, not yet placed in a row
    std::map<int, QWidget*> m_cells;
    ViewProvider m_provider;
    int m_rowHeight = 48;
    int m_cellsMade = 0;
    bool m_tiling = false;
};

} // namespace corvane
