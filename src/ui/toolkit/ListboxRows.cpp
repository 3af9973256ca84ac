// What the rows of a list hold.
#include "platform/Exceptions.h"
#include "ui/toolkit/Listbox.h"

namespace sorbel {

String Listbox::Cell(int64_t row) const {
    if (!HasRow(row)) return {};
    const std::unique_ptr<String>& text = RowAt(row).Text;
    return text ? *text : String();
}

void Listbox::SetCell(int64_t row, StringView text) {
    std::unique_ptr<String>& stored = RowAt(row).Text;
    if (text.empty())
        stored.reset();
    else if (stored)
        *stored = text;
    else
        stored = std::make_unique<String>(text);
    // A paint stores the text that it is about to draw; a notice would ask for the next paint, for ever.
    if (!mPainting) Changed(Aspect::Cells);
}

int64_t Listbox::NumberTag(int64_t row) const {
    return RowAt(row).NumberTag;
}

void Listbox::SetNumberTag(int64_t row, int64_t tag) {
    RowAt(row).NumberTag = tag;
}

const SharedText& Listbox::TextTag(int64_t row) const {
    return RowAt(row).TextTag;
}

void Listbox::SetTextTag(int64_t row, SharedText tag) {
    RowAt(row).TextTag = std::move(tag);
}

std::shared_ptr<const Picture> Listbox::RowPicture(int64_t row) const {
    const uint32_t number = RowAt(row).Picture;
    return number ? mPictures[number - 1] : nullptr;
}

void Listbox::SetRowPicture(int64_t row, std::shared_ptr<const Picture> picture) {
    static_assert(sizeof(Row) <= 40, "there are millions of rows");
    uint32_t& number = RowAt(row).Picture;
    number = 0;
    if (picture) {
        const auto next = static_cast<uint32_t>(mPictures.size() + 1);
        const auto [known, isNew] = mPictureNumbers.try_emplace(picture.get(), next);
        number = known->second;
        if (isNew) mPictures.push_back(std::move(picture));
    }
    Changed(Aspect::Cells);
}

bool Listbox::IsFolder(int64_t row) const {
    return RowAt(row).Folder;
}

int Listbox::Depth(int64_t row) const {
    return Find(row).Child < 0 ? 0 : 1;
}

}  // namespace sorbel
