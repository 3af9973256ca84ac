#include "ui/toolkit/PopupMenu.h"

#include "platform/Exceptions.h"

namespace sorbel {

void PopupMenu::AddRow(StringView text) {
    mRows.push_back({String(text), nullptr});
    Changed(Aspect::Rows);
}

void PopupMenu::DeleteAllRows() {
    mRows.clear();
    mListIndex = -1;
    Changed(Aspect::Rows);
}

void PopupMenu::SetListIndex(int64_t row) {
    mListIndex = HasRow(row) ? row : -1;
    Changed(Aspect::Selection);
    Raise(Change);
}

const String& PopupMenu::RowText(int64_t row) const {
    return RowAt(row).Text;
}

const std::shared_ptr<void>& PopupMenu::RowTag(int64_t row) const {
    return RowAt(row).Tag;
}

void PopupMenu::SetRowTag(int64_t row, std::shared_ptr<void> tag) {
    const_cast<Row&>(RowAt(row)).Tag = std::move(tag);
}

void PopupMenu::UserChoose(int64_t row) {
    if (HasRow(row)) ByUser([&] { SetListIndex(row); });
}

const PopupMenu::Row& PopupMenu::RowAt(int64_t row) const {
    if (!HasRow(row)) throw OutOfBoundsException("No such row in the menu.");
    return mRows[static_cast<size_t>(row)];
}

}  // namespace sorbel
