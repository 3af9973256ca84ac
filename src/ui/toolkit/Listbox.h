#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/SharedText.h"
#include "ui/toolkit/Control.h"
#include "ui/toolkit/Graphics.h"

namespace sorbel {

/// A list of one visible column with folders that open, single selection. A row is a few dozen bytes: two
/// tags, a picture and, once it has been painted or made with one, a text. Opening and closing a folder,
/// selecting and scrolling take time that does not depend on the number of rows.
class Listbox : public Control {
  public:
    using Control::Control;
    void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }

    // --- Building. Each acts at once. ---
    /// Appends a closed folder.
    void AddFolder(StringView text, int64_t numberTag = 0, const SharedText& textTag = {});
    /// Appends a row; inside `ExpandRow`, a child of the folder that opens.
    void AddRow(StringView text, int64_t numberTag = 0, const SharedText& textTag = {},
                std::shared_ptr<const Picture> picture = nullptr);
    /// The row added last, -1 if there is none.
    [[nodiscard]] int64_t LastIndex() const { return mLastIndex; }
    /// The selection becomes -1; raises `Change` if a row was selected.
    void DeleteAllRows();

    // --- Rows as they stand, children of open folders included ---
    [[nodiscard]] int64_t ListCount() const { return static_cast<int64_t>(mTop.size()) + mChildCount; }
    // Apart from `Cell`, they fail with OutOfBoundsException for a row that is not there.
    /// Text of a row, empty for a row that is not there.
    [[nodiscard]] String Cell(int64_t row) const;
    /// Stores a row's text. Inside a paint this asks for no new paint.
    void SetCell(int64_t row, StringView text);
    /// The tag of the visible column, for the owner's use.
    [[nodiscard]] int64_t NumberTag(int64_t row) const;
    /// The tag of a second, invisible column.
    [[nodiscard]] const SharedText& TextTag(int64_t row) const;
    [[nodiscard]] std::shared_ptr<const Picture> RowPicture(int64_t row) const;
    [[nodiscard]] bool IsFolder(int64_t row) const;
    [[nodiscard]] int Depth(int64_t row) const;  ///< 0, or 1 for a child
    [[nodiscard]] bool Expanded(int64_t row) const;
    /// The rows of the open folders, from the top; takes time by their number.
    [[nodiscard]] std::vector<int64_t> ExpandedRows() const;
    /// Opening a closed folder raises `ExpandRow` inside the call; closing removes its children. The
    /// selection stays on its row under its new number; closing over a selected child selects the folder and
    /// raises `Change`.
    void SetExpanded(int64_t row, bool expanded);

    // --- Selection and view ---
    [[nodiscard]] int64_t ListIndex() const { return mListIndex; }
    /// -1 for none; a row that is not there counts as none. Raises `Change`, also for the present value.
    void SetListIndex(int64_t row);
    [[nodiscard]] bool Selected(int64_t row) const { return row >= 0 && row == mListIndex; }
    [[nodiscard]] int64_t ScrollPosition() const { return WithinRows(mScrollPosition); }
    /// Index of the top visible row, kept within the rows.
    void SetScrollPosition(int64_t row);
    /// Asks for a new paint of a row.
    void InvalidateRow(int64_t row);

    // --- Events of the owner ---
    std::function<void()> Change;
    std::function<void(int64_t row)> ExpandRow;
    /// Before the list acts on a click; row -1 is below the last row. True: the list does nothing more.
    std::function<bool(int64_t row, int column, int x, int y)> CellClick;
    /// Before the text of a row is drawn; true: the handler has dealt with the cell.
    std::function<bool(Graphics& g, int64_t row, int column, int x, int y)> CellTextPaint;
    /// The user wants to edit what the selected row stands for.
    std::function<void()> EditRow;
    /// What assistive technology reads out for a row. Has no effect on the row.
    std::function<String(int64_t row)> DescribeRow;

    /// What a pointer tells that rests on a row's picture.
    std::function<String(int64_t row)> PictureTip;
    /// What it tells at a place of a row, with the width that `CellTextPaint` finds. For the empty text, what
    /// the row has no room for.
    std::function<String(int64_t row, int x, int width)> CellTip;

    // --- What a user does ---
    /// A click on a row, -1 for below the last: the event, then selecting by number in the list as it stands
    /// then; below the last row, or on one that has gone meanwhile, the selection is cleared or kept empty.
    void UserClick(int64_t row, int x, int y);
    void UserSelect(int64_t row);
    void UserExpand(int64_t row, bool expanded);
    /// Does nothing while no row is selected.
    void UserEdit();
    void UserScroll(int64_t row);
    /// Lets the owner choose text, colour and style of a row. True: nothing is left to draw but the icons.
    bool PaintCell(Graphics& g, int64_t row, int x, int y);

  private:
    struct Row {
        Row(int64_t numberTag, const SharedText& textTag, bool folder)
            : TextTag(textTag), NumberTag(numberTag), Folder(folder) {}
        void SetText(StringView text);

        SharedText TextTag;
        int64_t NumberTag;
        std::unique_ptr<String> Text;  // null for the empty text
        uint32_t Picture = 0;          // 1 + index into mPictures; 0 is none
        bool Folder;
    };
    static_assert(sizeof(Row) <= 40, "there are millions of rows");
    /// An open folder: the place of its row among the top-level rows, and its children.
    struct Opened {
        int64_t Top;
        int64_t ChildrenBefore;  // children of the open folders above
        std::vector<Row> Children;
    };
    struct Place {
        size_t Top;
        size_t Open;    // first of mOpened whose folder lies at or below Top
        int64_t Child;  // -1: the top-level row itself
    };

    [[nodiscard]] bool HasRow(int64_t row) const { return row >= 0 && row < ListCount(); }
    [[nodiscard]] Place Find(int64_t row) const;
    [[nodiscard]] const Row& RowAt(int64_t row) const;  // fails with OutOfBoundsException
    [[nodiscard]] Row& RowAt(int64_t row);
    [[nodiscard]] bool IsOpen(const Place& place) const;
    [[nodiscard]] int64_t WithinRows(int64_t row) const;
    [[nodiscard]] size_t OpenedAt(int64_t top) const;
    void CountChild(const Opened& folder);
    uint32_t NumberOf(std::shared_ptr<const Picture> picture);
    void Open(int64_t row, const Place& place);
    void Close(int64_t row, const Place& place);
    void MoveChildrenBelow(size_t open, int64_t count);

    std::vector<Row> mTop;
    std::vector<Opened> mOpened;                            // by Top
    std::vector<std::shared_ptr<const Picture>> mPictures;  // each once, for as long as there are rows
    std::unordered_map<const Picture*, uint32_t> mPictureNumbers;
    int64_t mChildCount = 0;
    int64_t mListIndex = -1;
    int64_t mLastIndex = -1;
    int64_t mScrollPosition = 0;
    // `Top` of the folders whose ExpandRow runs, the innermost last; -1 if that folder has gone meanwhile.
    std::vector<int64_t> mExpanding;
    bool mPainting = false;
};

}  // namespace sorbel
