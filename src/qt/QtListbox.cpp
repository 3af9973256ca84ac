#include "qt/QtListbox.h"

#include <QScrollBar>

#include "qt/ListRowPainter.h"
#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

QtListbox::QtListbox(Listbox& control, QtWindow& window)
    : ControlView(control, window, *new ListView(control, window)),
      mControl(control),
      mRows(control, window),
      mView(static_cast<ListView&>(Widget())) {
    mView.setModel(&mRows);
    QObject::connect(mView.verticalScrollBar(), &QScrollBar::valueChanged, [this](int row) {
        if (!mTelling) mControl.UserScroll(row);
    });
}

/// Rebuilt rows stay where the list says; a selection that moved to another row brings it into view.
void QtListbox::Show(Aspects changed) {
    const bool rows = changed.Has(Aspect::Rows);
    const bool scroll = rows || changed.Has(Aspect::Scroll) || changed.Has(Aspect::Geometry);
    const bool moved = changed.Has(Aspect::Selection) && !rows && mControl.ListIndex() != mShownIndex;
    mTelling = true;
    if (rows) mRows.Reload();
    if (rows || changed.Has(Aspect::Geometry)) mView.doItemsLayout();
    if (scroll) mView.verticalScrollBar()->setValue(static_cast<int>(mControl.ScrollPosition()));
    if (rows || changed.Has(Aspect::Selection)) ShowSelection();
    if (moved) mView.scrollTo(mView.currentIndex());
    mView.Refresh();
    mTelling = false;
    // The last page cannot be scrolled further up, and following the selection scrolls as well.
    const int top = mView.verticalScrollBar()->value();
    if (top != mControl.ScrollPosition()) Owner().AfterFlush([this, top] { mControl.UserScroll(top); });
}

PlacedTip QtListbox::TipAt(const QPoint& at) const {
    const QPoint inRows = mView.viewport()->mapFrom(&mView, at);
    const QModelIndex index = mView.indexAt(inRows);
    if (!index.isValid() || !mView.viewport()->rect().contains(inRows)) return {};
    const QRect place = mView.RowRect(index.row());
    const String tip = TipOfRow(index.row(), inRows - place.topLeft());
    return {ToQt(ReplaceLineEndings(tip, "\n")),
            place.translated(mView.viewport()->mapTo(&mView, QPoint(0, 0)))};
}

String QtListbox::TipOfRow(int row, const QPoint& inRow) const {
    const ListRowPainter painter = mView.RowPainter();
    const QRect place(QPoint(0, 0), mView.RowRect(row).size());
    if (mControl.PictureTip && painter.PictureRect(row, place).contains(inRow))
        return mControl.PictureTip(row);
    const DesignUnits& units = Owner().Units();
    String told;
    if (mControl.CellTip)
        told = mControl.CellTip(row, units.FromPixels(inRow.x()), units.FromPixels(place.width()));
    return told.empty() ? painter.ElidedText(row, place) : told;
}

void QtListbox::ShowSelection() {
    mShownIndex = mControl.ListIndex();
    const QModelIndex index = mRows.index(static_cast<int>(mShownIndex), 0);
    mView.setAutoScroll(false);
    mView.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

}  // namespace sorbel
