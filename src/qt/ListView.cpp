#include "qt/ListView.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "qt/ExpansionNotice.h"
#include "qt/ListReader.h"
#include "qt/ListRowPainter.h"
#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

void ListRows::Reload() {
    beginResetModel();
    mCount = static_cast<int>(std::min<int64_t>(mList.ListCount(), INT_MAX));
    endResetModel();
}

int ListRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : mCount;
}

QVariant ListRows::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) return {};
    if (!index.isValid() || index.row() >= mList.ListCount() || !mList.DescribeRow) return {};
    QString text;
    mWindow.Guard([&] { text = ToQt(mList.DescribeRow(index.row())); });
    return text;
}

ListView::ListView(Listbox& list, QtWindow& window)
    : QListView(&window.Content()), mList(list), mWindow(window) {
    ReadListsByRow();
    setUniformItemSizes(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerItem);
    setAttribute(Qt::WA_InputMethodEnabled, false);
}

int ListView::RowHeight() const {
    return std::max(mWindow.Units().ToPixels(18), fontMetrics().height() + 4);
}

int ListView::RowCount() const {
    const int64_t shown = model() ? model()->rowCount() : 0;
    return static_cast<int>(std::min(shown, mList.ListCount()));
}

QRect ListView::RowRect(int row) const {
    return {0, (row - verticalScrollBar()->value()) * RowHeight(), viewport()->width(), RowHeight()};
}

QModelIndex ListView::indexAt(const QPoint& point) const {
    const int row = verticalScrollBar()->value() + point.y() / RowHeight();
    return point.y() >= 0 && row < RowCount() ? model()->index(row, 0) : QModelIndex();
}

void ListView::scrollTo(const QModelIndex& index, ScrollHint /*hint*/) {
    const int top = verticalScrollBar()->value();
    const int lowest = std::max(0, index.row() - RowsPerPage() + 1);
    if (index.isValid()) verticalScrollBar()->setValue(std::clamp(top, lowest, index.row()));
}

/// Past the toolkit's own layout, which visits every row.
void ListView::doItemsLayout() {
    QAbstractItemView::doItemsLayout();  // NOLINT(bugprone-parent-virtual-call)
}

void ListView::updateGeometries() {
    verticalScrollBar()->setRange(0, std::max(0, RowCount() - RowsPerPage()));
    verticalScrollBar()->setPageStep(RowsPerPage());
    verticalScrollBar()->setSingleStep(1);
}

void ListView::scrollContentsBy(int /*dx*/, int /*dy*/) {
    viewport()->update();
}

/// Keys are the control's affair, so there is nowhere to move to.
QModelIndex ListView::moveCursor(CursorAction /*action*/, Qt::KeyboardModifiers /*modifiers*/) {
    return currentIndex();
}

int ListView::verticalOffset() const {
    return verticalScrollBar()->value() * RowHeight();
}

QRegion ListView::visualRegionForSelection(const QItemSelection& selection) const {
    QRegion region;
    for (const QModelIndex& index : selection.indexes())
        region += visualRect(index);
    return region;
}

void ListView::Refresh() {
    mStale = true;
    viewport()->update();
}

ListRowPainter ListView::RowPainter() const {
    return {mList, *this, mWindow.Theme(), mWindow.Units(), mShapes};
}

void ListView::paintEvent(QPaintEvent* event) {
    mStale = false;
    QPainter painter(viewport());
    painter.setFont(font());
    const ListRowPainter rows = RowPainter();
    const int top = verticalScrollBar()->value();
    const int first = top + event->rect().top() / RowHeight();
    const int last = std::min(RowCount() - 1, top + event->rect().bottom() / RowHeight());
    for (int row = first; row <= last; ++row)
        mWindow.Guard([&] { rows.Paint(painter, row, RowRect(row)); });
    const QRect selected = RowRect(static_cast<int>(mList.ListIndex()));
    const bool seen = mList.ListIndex() >= 0 && viewport()->rect().intersects(selected);
    if (hasFocus() && !seen) DrawFocusFrame(painter, *viewport());
}

/// Tips are the affair of the view, not of the rows' data.
bool ListView::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QListView::viewportEvent(event);
    event->ignore();
    return false;
}

/// A click takes the text that its row shows, which a paint chooses.
void ListView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (mStale) viewport()->repaint();
    const QPoint at = event->position().toPoint();
    const QModelIndex index = indexAt(at);
    const int row = index.isValid() ? index.row() : -1;
    if (row >= 0 && mList.IsFolder(row) && RowPainter().TriangleRect(RowRect(row)).contains(at))
        return OpenRow(row, !mList.Expanded(row));
    TakeKeyboard();
    const QPoint inRow = mWindow.Units().FromPixels(row >= 0 ? at - RowRect(row).topLeft() : at);
    mList.UserClick(row, inRow.x(), inRow.y());
}

/// The first click has selected the folder, unless that has brought another row under the pointer.
void ListView::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const int row = indexAt(at).row();
    const bool folder = event->button() == Qt::LeftButton && mList.Selected(row) && mList.IsFolder(row);
    if (!folder || RowPainter().TriangleRect(RowRect(row)).contains(at)) return mousePressEvent(event);
    OpenRow(row, !mList.Expanded(row));
}

/// It may stand in for a control that is disabled at present; what is done here ends that.
void ListView::TakeKeyboard() {
    if (!mList.HasFocus()) mWindow.Model().UserFocus(&mList);
}

void ListView::keyPressEvent(QKeyEvent* event) {
    const bool plain = (event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) == 0;
    if (plain && RowCount() > 0 && (MoveBy(event->key()) || OpenOrClose(event->key()) || Edit(*event)))
        return;
    event->ignore();
}

/// A key that is held down since it led here does not lead on.
bool ListView::Edit(const QKeyEvent& event) {
    const int key = event.key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_F2) return false;
    if (!event.isAutoRepeat()) mList.UserEdit();
    return true;
}

/// Without a selected row they begin with what is in sight.
bool ListView::MoveBy(int key) {
    const int64_t from = mList.ListIndex();
    const int64_t last = RowCount() - 1;
    const int64_t page = std::max(1, RowsPerPage() - 1);
    const int64_t top = verticalScrollBar()->value();
    int64_t to = 0;
    switch (key) {
        case Qt::Key_Up:
            to = from < 0 ? top + RowsPerPage() - 1 : from - 1;
            break;
        case Qt::Key_Down:
            to = from < 0 ? top : from + 1;
            break;
        case Qt::Key_PageUp:
            to = from - page;
            break;
        case Qt::Key_PageDown:
            to = from + page;
            break;
        case Qt::Key_Home:
            break;
        case Qt::Key_End:
            to = last;
            break;
        default:
            return false;
    }
    to = std::clamp<int64_t>(to, 0, last);
    TakeKeyboard();
    if (to != from) mList.UserSelect(to);
    return true;
}

/// Right and "+" open a folder, Left and "-" close it; Left on a child goes to its folder.
bool ListView::OpenOrClose(int key) {
    const bool open = key == Qt::Key_Right || key == Qt::Key_Plus;
    const bool close = key == Qt::Key_Left || key == Qt::Key_Minus;
    int64_t row = mList.ListIndex();
    if ((!open && !close) || row < 0) return false;
    TakeKeyboard();
    if (mList.IsFolder(row)) {
        if (mList.Expanded(row) != open) OpenRow(static_cast<int>(row), open);
    } else if (close && mList.Depth(row) > 0) {
        while (mList.Depth(row) > 0)
            --row;
        mList.UserSelect(row);
    }
    return true;
}

void ListView::OpenRow(int row, bool open) {
    mList.UserExpand(row, open);
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(this);
    QAccessibleInterface* const opened = list ? list->child(row) : nullptr;
    if (opened) TellExpansion(*opened);
}

/// The list may be ahead of what is shown, and what was a row may be none any more, or another one.
void ListView::TellRow(int row, QAccessible::Event what) {
    if (row < 0 || row >= RowCount() || mList.Selected(row) == (what == QAccessible::SelectionRemove)) return;
    QAccessibleEvent event(this, what);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
}

/// To assistive technology it is the selected row that has the focus.
void ListView::TellFocusedRow() {
    if (hasFocus()) TellRow(currentIndex().row(), QAccessible::Focus);
}

/// Past the toolkit's own list, which finds a row's number through the layout that it does not have here.
void ListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QAbstractItemView::currentChanged(current, previous);  // NOLINT(bugprone-parent-virtual-call)
    TellFocusedRow();
}

void ListView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QAbstractItemView::selectionChanged(selected, deselected);  // NOLINT(bugprone-parent-virtual-call)
    if (!deselected.isEmpty()) TellRow(deselected.first().top(), QAccessible::SelectionRemove);
    if (!selected.isEmpty()) TellRow(selected.first().top(), QAccessible::Selection);
}

void ListView::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    viewport()->update();
    TellFocusedRow();
}

void ListView::focusOutEvent(QFocusEvent* event) {
    QListView::focusOutEvent(event);
    viewport()->update();
}

}  // namespace sorbel
