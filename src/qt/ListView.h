#pragma once

#include <QAbstractListModel>
#include <QAccessible>
#include <QListView>

#include "qt/ShapedLines.h"
#include "ui/toolkit/Listbox.h"

namespace sorbel {

class ListRowPainter;
class QtWindow;

/// The rows of a list as assistive technology reads them. Nothing is kept for a row.
class ListRows : public QAbstractListModel {
  public:
    ListRows(const Listbox& list, QtWindow& window) : mList(list), mWindow(window) {}
    /// The list's rows are other ones now.
    void Reload();
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  private:
    const Listbox& mList;
    QtWindow& mWindow;
    int mCount = 0;
};

/// A list whose rows all have one height, so that every place is computed and nothing is laid out row by row.
/// It decides nothing by itself: keys and clicks go to the control, which is shown again afterwards.
class ListView : public QListView {
  public:
    ListView(Listbox& list, QtWindow& window);

    [[nodiscard]] Listbox& Model() const { return mList; }
    [[nodiscard]] int RowHeight() const;
    /// Rows that are there now and also in the list, which may already be ahead.
    [[nodiscard]] int RowCount() const;
    [[nodiscard]] QRect RowRect(int row) const;
    [[nodiscard]] int RowsPerPage() const { return std::max(1, viewport()->height() / RowHeight()); }

    /// Asks for a new paint of all rows.
    void Refresh();
    /// Opens or closes a folder for the user.
    void OpenRow(int row, bool open);
    /// Draws rows as they are drawn here.
    [[nodiscard]] ListRowPainter RowPainter() const;

    // The geometry of a view whose rows have one height.
    [[nodiscard]] QRect visualRect(const QModelIndex& index) const override { return RowRect(index.row()); }
    [[nodiscard]] QModelIndex indexAt(const QPoint& point) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;
    void keyboardSearch(const QString& /*text*/) override {}

  protected:
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    [[nodiscard]] int horizontalOffset() const override { return 0; }
    [[nodiscard]] int verticalOffset() const override;
    void setSelection(const QRect&, QItemSelectionModel::SelectionFlags) override {}
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection& selection) const override;

    void paintEvent(QPaintEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent*) override {}
    void mouseReleaseEvent(QMouseEvent*) override {}
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

  private:
    bool MoveBy(int key);
    bool OpenOrClose(int key);
    bool Edit(const QKeyEvent& event);
    void TakeKeyboard();
    void TellFocusedRow();
    void TellRow(int row, QAccessible::Event what);

    Listbox& mList;
    QtWindow& mWindow;
    mutable ShapedLines mShapes;
    bool mStale = false;  ///< rows have changed since the last paint
};

}  // namespace sorbel
