#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "ui/toolkit/Control.h"

namespace sorbel {

/// A button that shows one of several rows and lets the user choose another.
class PopupMenu : public Control {
  public:
    using Control::Control;
    void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }

    void AddRow(StringView text);
    /// The selection becomes -1; raises nothing.
    void DeleteAllRows();
    [[nodiscard]] int64_t ListCount() const { return static_cast<int64_t>(mRows.size()); }
    [[nodiscard]] int64_t ListIndex() const { return mListIndex; }
    /// -1 for none; a row that is not there counts as none. Raises `Change`, also for the present value.
    void SetListIndex(int64_t row);
    [[nodiscard]] const String& RowText(int64_t row) const;
    /// An object of the owner's that goes with a row; null at first.
    [[nodiscard]] const std::shared_ptr<void>& RowTag(int64_t row) const;
    void SetRowTag(int64_t row, std::shared_ptr<void> tag);

    std::function<void()> Change;
    /// The user's choice of a row; nothing happens for a row that is not there.
    void UserChoose(int64_t row);

  private:
    struct Row {
        String Text;
        std::shared_ptr<void> Tag;
    };
    [[nodiscard]] bool HasRow(int64_t row) const { return row >= 0 && row < ListCount(); }
    [[nodiscard]] const Row& RowAt(int64_t row) const;  // fails with OutOfBoundsException

    std::vector<Row> mRows;
    int64_t mListIndex = -1;
};

}  // namespace sorbel
