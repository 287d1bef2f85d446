// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemeTableView.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

#include <algorithm>

namespace corvane {
namespace {

// Rows are drawn by their cells; the table itself draws only what lies between and beneath them: a
// hairline between rows, and a soft band under the current row while the list has keyboard focus
// (soft, so the cell's text keeps its contrast in light and dark palettes).
class RowBackgroundDelegate final : public QStyledItemDelegate {
public:
    explicit RowBackgroundDelegate(ThemeTableView* table) : QStyledItemDelegate(table), m_table(table) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {1, m_table->rowHeight()};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        if (option.state & QStyle::State_HasFocus) {
            QColor band = option.palette.color(QPalette::Highlight);
            band.setAlphaF(0.16f);
            painter->fillRect(option.rect, band);
        }
        // No line under a header, nor over one: its own air sets the sections apart.
        const auto isHeader = [&](int row) {
            return index.model()->index(row, 0, index.parent()).data(ThemeTableView::HeaderRole).toBool();
        };
        if (index.row() + 1 < index.model()->rowCount(index.parent()) && !isHeader(index.row())
            && !isHeader(index.row() + 1)) {
            QColor line = option.palette.color(QPalette::WindowText);
            line.setAlphaF(0.10f);
            painter->fillRect(QRect(option.rect.left() + 14, option.rect.bottom(), option.rect.width() - 14, 1),
                              line);
        }
    }

private:
    ThemeTableView* m_table;
};

bool takesTabFocus(const QWidget* widget)
{
    return (widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() && widget->isVisibleTo(widget->window());
}

} // namespace

ThemeTableView::ThemeTableView(QWidget* parent) : QListView(parent)
{
    setUniformItemSizes(true);
    setSpacing(0);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setItemDelegate(new RowBackgroundDelegate(this));
}

ThemeTableView::~ThemeTableView() = default;

void ThemeTableView::registerView(const QString& identifier, ViewFactory factory)
{
    m_factories.insert(identifier, std::move(factory));
}

QWidget* ThemeTableView::makeView(const QString& identifier)
{
    QList<QWidget*>& queue = m_reuseQueues[identifier];
    QWidget* cell = nullptr;
    if (!queue.isEmpty()) {
        cell = queue.takeLast();
    } else {
        const ViewFactory factory = m_factories.value(identifier);
        if (!factory)
            return nullptr;
        cell = factory();
        if (!cell)
            return nullptr;
        cell->setParent(viewport());
        cell->hide();
        ++m_cellsMade;
        m_identifiers.insert(cell, identifier);
        for (QWidget* child : cell->findChildren<QWidget*>()) {
            if (child->focusPolicy() & Qt::TabFocus)
                child->installEventFilter(this);
        }
    }
    m_handedOut.append(cell);
    return cell;
}

void ThemeTableView::setViewProvider(ViewProvider provider)
{
    m_provider = std::move(provider);
    reloadData();
}

void ThemeTableView::setRowHeight(int height)
{
    if (height <= 0 || height == m_rowHeight)
        return;
    m_rowHeight = height;
    scheduleDelayedItemsLayout();
}

int ThemeTableView::numberOfRows() const
{
    return model() ? model()->rowCount(rootIndex()) : 0;
}

ThemeTableView::VisibleRange ThemeTableView::visibleRange() const
{
    VisibleRange range;
    const int rowCount = numberOfRows();
    if (rowCount == 0)
        return range;
    // The rows are uniform: the first row's place and the row pitch give every row's place.
    const QRect firstRect = visualRect(model()->index(0, 0, rootIndex()));
    if (firstRect.isEmpty())
        return range; // not laid out yet
    const int pitch = rowCount > 1 ? visualRect(model()->index(1, 0, rootIndex())).top() - firstRect.top()
                                   : firstRect.height();
    if (pitch <= 0)
        return range;
    const int height = viewport()->height();
    range.first = std::clamp((0 - firstRect.top()) / pitch, 0, rowCount - 1);
    range.last = std::clamp((height - 1 - firstRect.top()) / pitch, 0, rowCount - 1);
    range.firstTop = firstRect.top();
    range.pitch = pitch;
    range.height = firstRect.height();
    return range;
}

int ThemeTableView::firstVisibleRow() const
{
    return visibleRange().first;
}

int ThemeTableView::lastVisibleRow() const
{
    return visibleRange().last;
}

void ThemeTableView::reloadData()
{
    recycleAllCells();
    tileCells();
}

QWidget* ThemeTableView::cellForRow(int row) const
{
    const auto found = m_cells.find(row);
    return found == m_cells.end() ? nullptr : found->second;
}

QList<int> ThemeTableView::rowsWithCells() const
{
    QList<int> rows;
    rows.reserve(qsizetype(m_cells.size()));
    for (const auto& [row, cell] : m_cells)
        rows.append(row);
    return rows;
}

void ThemeTableView::layoutNow()
{
    executeDelayedItemsLayout();
    tileCells();
}

void ThemeTableView::reset()
{
    recycleAllCells();
    QListView::reset();
    // New rows are placed at once: a frame painted before a delayed layout would show the list
    // without rows, or cells without their places.
    layoutNow();
}

void ThemeTableView::doItemsLayout()
{
    QListView::doItemsLayout();
    tileCells();
}

void ThemeTableView::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    tileCells();
}

void ThemeTableView::resizeEvent(QResizeEvent* event)
{
    QListView::resizeEvent(event);
    tileCells();
}

void ThemeTableView::showEvent(QShowEvent* event)
{
    QListView::showEvent(event);
    tileCells();
}

void ThemeTableView::updateGeometries()
{
    QListView::updateGeometries();
    tileCells();
}

void ThemeTableView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QList<int>& roles)
{
    QListView::dataChanged(topLeft, bottomRight, roles);
    // A changed row on screen is configured anew, as a cell handed out for it would be.
    bool changed = false;
    for (auto it = m_cells.begin(); it != m_cells.end();) {
        if (it->first >= topLeft.row() && it->first <= bottomRight.row()) {
            recycleCell(it->second);
            it = m_cells.erase(it);
            changed = true;
        } else {
            ++it;
        }
    }
    if (changed)
        tileCells();
}

void ThemeTableView::rowsInserted(const QModelIndex& parent, int start, int end)
{
    recycleAllCells();
    QListView::rowsInserted(parent, start, end);
}

void ThemeTableView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end)
{
    recycleAllCells();
    QListView::rowsAboutToBeRemoved(parent, start, end);
}

void ThemeTableView::tileCells()
{
    if (m_tiling || !isVisible())
        return;
    QScopedValueRollback guard(m_tiling, true);

    const VisibleRange range = m_provider ? visibleRange() : VisibleRange{};
    if (range.first < 0) {
        if (numberOfRows() == 0 || !m_provider)
            recycleAllCells();
        return; // rows not laid out yet: doItemsLayout tiles again
    }

    bool changed = false;
    for (auto it = m_cells.begin(); it != m_cells.end();) {
        if (it->first < range.first || it->first > range.last) {
            recycleCell(it->second);
            it = m_cells.erase(it);
            changed = true;
        } else {
            ++it;
        }
    }

    const int width = viewport()->width();
    for (int row = range.first; row <= range.last; ++row) {
        QWidget* cell = cellForRow(row);
        if (!cell) {
            cell = m_provider(*this, row);
            if (!cell)
                continue;
            m_handedOut.removeOne(cell);
            m_cells.emplace(row, cell);
            changed = true;
        }
        const QRect place(0, range.firstTop + (row * range.pitch), width, range.height);
        if (cell->geometry() != place)
            cell->setGeometry(place);
        if (cell->isHidden())
            cell->show();
    }
    // Cells taken from makeView but not handed back for a row go back in the queue.
    for (QWidget* cell : std::exchange(m_handedOut, {}))
        recycleCell(cell);
    if (changed)
        emit rowsOnScreenChanged();
}

void ThemeTableView::recycleCell(QWidget* cell)
{
    if (QWidget* focused = QApplication::focusWidget(); focused && cell->isAncestorOf(focused))
        setFocus(Qt::OtherFocusReason);
    cell->hide();
    QList<QWidget*>& queue = m_reuseQueues[m_identifiers.value(cell)];
    if (!queue.contains(cell))
        queue.append(cell);
}

void ThemeTableView::recycleAllCells()
{
    for (const auto& [row, cell] : m_cells)
        recycleCell(cell);
    m_cells.clear();
}

int ThemeTableView::rowOfWidget(const QWidget* widget) const
{
    for (const auto& [row, cell] : m_cells) {
        if (cell == widget || cell->isAncestorOf(widget))
            return row;
    }
    return -1;
}

bool ThemeTableView::focusRow(int row, Qt::FocusReason reason)
{
    if (row < 0 || row >= numberOfRows())
        return false;
    scrollTo(model()->index(row, 0, rootIndex()), EnsureVisible);
    tileCells();
    QWidget* cell = cellForRow(row);
    if (!cell)
        return false;
    QList<QWidget*> targets;
    for (QWidget* child : cell->findChildren<QWidget*>()) {
        if (takesTabFocus(child))
            targets.append(child);
    }
    if (targets.isEmpty())
        return false;
    (reason == Qt::BacktabFocusReason ? targets.last() : targets.first())->setFocus(reason);
    return true;
}

bool ThemeTableView::focusRowOrNext(int row, int step, Qt::FocusReason reason)
{
    // Rows without a focusable widget never come in runs (a header always heads a row), so a few
    // steps reach a row with buttons or the end of the list.
    constexpr int attempts = 3;
    for (int attempt = 0; attempt < attempts && row >= 0 && row < numberOfRows(); ++attempt, row += step) {
        if (focusRow(row, reason))
            return true;
    }
    return false;
}

int ThemeTableView::focusedRow() const
{
    const QWidget* focused = QApplication::focusWidget();
    return focused ? rowOfWidget(focused) : -1;
}

bool ThemeTableView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        // The arrows, Page Up/Down, Home and End move from row to row, as in any list.
        const int row = rowOfWidget(static_cast<QWidget*>(watched));
        const int key = static_cast<QKeyEvent*>(event)->key();
        const int perPage = std::max(1, viewport()->height() / std::max(1, m_rowHeight) - 1);
        int target = -1;
        switch (key) {
        case Qt::Key_Up:
            target = row - 1;
            break;
        case Qt::Key_Down:
            target = row + 1;
            break;
        case Qt::Key_PageUp:
            target = std::max(0, row - perPage);
            break;
        case Qt::Key_PageDown:
            target = std::min(numberOfRows() - 1, row + perPage);
            break;
        case Qt::Key_Home:
            target = 0;
            break;
        case Qt::Key_End:
            target = numberOfRows() - 1;
            break;
        default:
            break;
        }
        if (row >= 0 && target != -1) {
            // Landing on a header moves on past it, away from the row left; Home and End look inward.
            const int step = key == Qt::Key_Home ? 1 : key == Qt::Key_End ? -1 : (target < row ? -1 : 1);
            if (target >= 0 && target < numberOfRows() && target != row)
                focusRowOrNext(target, step, target < row ? Qt::BacktabFocusReason : Qt::TabFocusReason);
            return true;
        }
    }
    if (event->type() == QEvent::FocusIn) {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        // Only keyboard focus scrolls: a click must land on the button it was aimed at.
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
            const int row = rowOfWidget(static_cast<QWidget*>(watched));
            if (row >= 0) {
                const QModelIndex index = model()->index(row, 0, rootIndex());
                selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
                scrollTo(index, EnsureVisible);
            }
        }
    }
    return QListView::eventFilter(watched, event);
}

} // namespace corvane
