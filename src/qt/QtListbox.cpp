#include "qt/QtListbox.h"

#include <QScrollBar>

#include "qt/QtWindow.h"

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

void QtListbox::ShowSelection() {
    mShownIndex = mControl.ListIndex();
    const QModelIndex index = mRows.index(static_cast<int>(mShownIndex), 0);
    mView.setAutoScroll(false);
    mView.selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

}  // namespace sorbel
