#include "ui/toolkit/Listbox.h"

#include <algorithm>

#include "platform/Exceptions.h"

namespace sorbel {

// --- Finding rows ---

// Rows are not numbered in memory. The open folders are: the one at place k of mOpened stands on row
// Top + ChildrenBefore, its children follow, and between two of them rows and top-level rows run in step.
Listbox::Place Listbox::Find(int64_t row) const {
    if (!HasRow(row)) throw OutOfBoundsException("No such row in the list.");
    if (mOpened.empty()) return {static_cast<size_t>(row), 0, -1};
    const auto folderRow = [](const Opened& folder) {
        return folder.Top + folder.ChildrenBefore;
    };
    const auto below = std::ranges::upper_bound(mOpened, row, {}, folderRow);
    const auto open = static_cast<size_t>(below - mOpened.begin());
    if (open == 0) return {static_cast<size_t>(row), 0, -1};
    const Opened& above = mOpened[open - 1];
    const auto children = static_cast<int64_t>(above.Children.size());
    const int64_t behind = row - folderRow(above);
    if (behind <= children) return {static_cast<size_t>(above.Top), open - 1, behind - 1};
    return {static_cast<size_t>(above.Top + behind - children), open, -1};
}

const Listbox::Row& Listbox::RowAt(int64_t row) const {
    const Place place = Find(row);
    if (place.Child < 0) return mTop[place.Top];
    return mOpened[place.Open].Children[static_cast<size_t>(place.Child)];
}

Listbox::Row& Listbox::RowAt(int64_t row) {
    return const_cast<Row&>(std::as_const(*this).RowAt(row));
}

bool Listbox::IsOpen(const Place& place) const {
    return place.Child < 0 && place.Open < mOpened.size() &&
           mOpened[place.Open].Top == static_cast<int64_t>(place.Top);
}

/// The place in mOpened of the folder `top`, or where it would be.
size_t Listbox::OpenedAt(int64_t top) const {
    return static_cast<size_t>(std::ranges::lower_bound(mOpened, top, {}, &Opened::Top) - mOpened.begin());
}

int64_t Listbox::WithinRows(int64_t row) const {
    return std::clamp<int64_t>(row, 0, std::max<int64_t>(ListCount() - 1, 0));
}

// --- Building ---

void Listbox::AddFolder(StringView text, int64_t numberTag, const SharedText& textTag) {
    Row& row = mTop.emplace_back(numberTag, textTag, true);
    if (!text.empty()) row.SetText(text);
    mLastIndex = ListCount() - 1;
    Changed(Aspect::Rows);
}

void Listbox::AddRow(StringView text, int64_t numberTag, const SharedText& textTag,
                     std::shared_ptr<const Picture> picture) {
    const bool isChild = !mExpanding.empty() && mExpanding.back() >= 0;
    Opened* const folder = isChild ? &mOpened[OpenedAt(mExpanding.back())] : nullptr;
    Row& row = (folder ? folder->Children : mTop).emplace_back(numberTag, textTag, false);
    if (!text.empty()) row.SetText(text);
    row.Picture = NumberOf(std::move(picture));
    if (folder)
        CountChild(*folder);
    else
        mLastIndex = ListCount() - 1;
    Changed(Aspect::Rows);
}

/// A row has come at the end of an open folder's.
void Listbox::CountChild(const Opened& folder) {
    mLastIndex = folder.Top + folder.ChildrenBefore + static_cast<int64_t>(folder.Children.size());
    if (mListIndex >= mLastIndex) ++mListIndex;
    MoveChildrenBelow(OpenedAt(folder.Top) + 1, 1);
}

/// `count` children have come (or, below 0, gone) above the open folders from `open` on.
void Listbox::MoveChildrenBelow(size_t open, int64_t count) {
    mChildCount += count;
    for (; open < mOpened.size(); ++open)
        mOpened[open].ChildrenBefore += count;
}

void Listbox::DeleteAllRows() {
    const bool wasSelected = mListIndex >= 0;
    mTop.clear();
    mOpened.clear();
    mPictures.clear();
    mPictureNumbers.clear();
    std::ranges::fill(mExpanding, -1);
    mChildCount = 0;
    mListIndex = mLastIndex = -1;
    Changed(Aspect::Rows);
    if (wasSelected) Raise(Change);
}

// --- Folders ---

bool Listbox::Expanded(int64_t row) const {
    return IsOpen(Find(row));
}

std::vector<int64_t> Listbox::ExpandedRows() const {
    std::vector<int64_t> rows;
    rows.reserve(mOpened.size());
    for (const Opened& folder : mOpened)
        rows.push_back(folder.Top + folder.ChildrenBefore);
    return rows;
}

void Listbox::SetExpanded(int64_t row, bool expanded) {
    const Place place = Find(row);
    if (place.Child >= 0 || !mTop[place.Top].Folder || IsOpen(place) == expanded) return;
    if (expanded)
        Open(row, place);
    else
        Close(row, place);
}

void Listbox::Open(int64_t row, const Place& place) {
    /// Names the folder that rows are added to, while its event runs.
    struct Expanding {
        std::vector<int64_t>& Tops;
        Expanding(std::vector<int64_t>& tops, int64_t top) : Tops(tops) { Tops.push_back(top); }
        ~Expanding() { Tops.pop_back(); }
    };
    const auto top = static_cast<int64_t>(place.Top);
    mOpened.insert(mOpened.begin() + static_cast<std::ptrdiff_t>(place.Open), Opened{top, row - top, {}});
    Changed(Aspect::Rows);
    const Expanding expanding(mExpanding, top);
    Raise(ExpandRow, row);
}

void Listbox::Close(int64_t row, const Place& place) {
    const auto count = static_cast<int64_t>(mOpened[place.Open].Children.size());
    mOpened.erase(mOpened.begin() + static_cast<std::ptrdiff_t>(place.Open));
    MoveChildrenBelow(place.Open, -count);
    std::ranges::replace(mExpanding, static_cast<int64_t>(place.Top), int64_t{-1});
    const int64_t lastChild = row + count;
    if (mLastIndex > row) mLastIndex = mLastIndex > lastChild ? mLastIndex - count : -1;
    const bool overSelected = mListIndex > row && mListIndex <= lastChild;
    if (overSelected)
        mListIndex = row;
    else if (mListIndex > lastChild)
        mListIndex -= count;
    Changed(Aspect::Rows);
    if (overSelected) Raise(Change);
}

// --- Selection and view ---

void Listbox::SetListIndex(int64_t row) {
    mListIndex = HasRow(row) ? row : -1;
    Changed(Aspect::Selection);
    Raise(Change);
}

void Listbox::SetScrollPosition(int64_t row) {
    mScrollPosition = WithinRows(row);
    Changed(Aspect::Scroll);
}

void Listbox::InvalidateRow(int64_t row) {
    if (HasRow(row)) Changed(Aspect::Cells);
}

// --- What a user does ---

void Listbox::UserClick(int64_t row, int x, int y) {
    ByUser([&] {
        if (CellClick && CellClick(HasRow(row) ? row : -1, 0, x, y)) return;
        // The handler may have made other rows: the click lands on what now has the number.
        if (HasRow(row))
            SetListIndex(row);
        else if (mListIndex >= 0)
            SetListIndex(-1);
    });
}

void Listbox::UserSelect(int64_t row) {
    ByUser([&] { SetListIndex(row); });
}

void Listbox::UserExpand(int64_t row, bool expanded) {
    if (HasRow(row)) ByUser([&] { SetExpanded(row, expanded); });
}

void Listbox::UserEdit() {
    if (mListIndex >= 0) ByUser([&] { Raise(EditRow); });
}

void Listbox::UserScroll(int64_t row) {
    ByUser([&] { SetScrollPosition(row); });
}

bool Listbox::PaintCell(Graphics& g, int64_t row, int x, int y) {
    struct Painting {
        bool& Flag;
        explicit Painting(bool& flag) : Flag(flag) { Flag = true; }
        ~Painting() { Flag = false; }
    };
    const Painting painting(mPainting);
    return CellTextPaint && HasRow(row) && CellTextPaint(g, row, 0, x, y);
}

}  // namespace sorbel
