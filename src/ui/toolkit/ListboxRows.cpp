// What the rows of a list hold.
#include "platform/Exceptions.h"
#include "ui/toolkit/Listbox.h"

namespace sorbel {

String Listbox::Cell(int64_t row) const {
    if (!HasRow(row)) return {};
    const std::unique_ptr<String>& text = RowAt(row).Text;
    return text ? *text : String();
}

void Listbox::Row::SetText(StringView text) {
    if (text.empty())
        Text.reset();
    else if (Text)
        *Text = text;
    else
        Text = std::make_unique<String>(text);
}

void Listbox::SetCell(int64_t row, StringView text) {
    RowAt(row).SetText(text);
    // A paint stores the text that it is about to draw; a notice would ask for the next paint, for ever.
    if (!mPainting) Changed(Aspect::Cells);
}

int64_t Listbox::NumberTag(int64_t row) const {
    return RowAt(row).NumberTag;
}

const SharedText& Listbox::TextTag(int64_t row) const {
    return RowAt(row).TextTag;
}

std::shared_ptr<const Picture> Listbox::RowPicture(int64_t row) const {
    const uint32_t number = RowAt(row).Picture;
    return number ? mPictures[number - 1] : nullptr;
}

/// How rows refer to a picture; 0 for none.
uint32_t Listbox::NumberOf(std::shared_ptr<const Picture> picture) {
    if (!picture) return 0;
    const auto next = static_cast<uint32_t>(mPictures.size() + 1);
    const auto [known, isNew] = mPictureNumbers.try_emplace(picture.get(), next);
    if (isNew) mPictures.push_back(std::move(picture));
    return known->second;
}

bool Listbox::IsFolder(int64_t row) const {
    return RowAt(row).Folder;
}

int Listbox::Depth(int64_t row) const {
    return Find(row).Child < 0 ? 0 : 1;
}

}  // namespace sorbel
