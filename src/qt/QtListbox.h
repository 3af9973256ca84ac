#pragma once

#include "qt/ControlView.h"
#include "qt/ListView.h"

namespace sorbel {

class QtListbox : public ControlView {
  public:
    QtListbox(Listbox& control, QtWindow& window);

    [[nodiscard]] PlacedTip TipAt(const QPoint& at) const override;

  protected:
    void Show(Aspects changed) override;

  private:
    void ShowSelection();
    [[nodiscard]] String TipOfRow(int row, const QPoint& inRow) const;

    Listbox& mControl;
    ListRows mRows;
    ListView& mView;
    int64_t mShownIndex = -1;
    bool mTelling = false;  ///< the widget is being told, so what it reports is not the user's
};

}  // namespace sorbel
