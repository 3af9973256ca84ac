#pragma once

#include <optional>

#include "platform/Text.h"
#include "scripting/compiler/Heap.h"

namespace sorbel::script {

/// The bytes of a text; null is the empty text.
[[nodiscard]] inline StringView ViewOf(Text* text) {
    return text ? text->View() : StringView();
}

/// The number of characters, which is counted once.
int64_t CountCharacters(Text* text);
[[nodiscard]] inline bool IsAscii(Text* text) {
    if (!text) return true;
    CountCharacters(text);
    return text->Ascii;
}
/// The byte at which a character (from 0, up to their number) begins.
[[nodiscard]] size_t ByteOf(Memory& memory, Text* text, int64_t character);

/// Plain equality and order, which ignore letter case.
[[nodiscard]] bool SameText(Text* a, Text* b);
[[nodiscard]] int CompareTexts(Text* a, Text* b);

/// Bytes of a text.
struct Place {
    size_t Byte;
    size_t Size;
};
/// Where a term is that is not empty, without regard to letter case.
[[nodiscard]] std::optional<Place> FindFolded(StringView text, StringView term);
/// The place of a term, as `InStr` of the platform, quick for plain text and for what is near.
/// A text that is put together. What it needs is counted before it is taken.
class TextDraft {
  public:
    explicit TextDraft(Memory& memory) : mMemory(memory) {}
    ~TextDraft() { mMemory.Release(mText); }
    TextDraft(const TextDraft&) = delete;
    TextDraft& operator=(const TextDraft&) = delete;
    /// Makes room for so many more bytes, and no more than that.
    void Reserve(size_t more);
    void Append(StringView part);
    /// The text, with its reference; null if it is empty.
    [[nodiscard]] Text* Take();

  private:
    [[nodiscard]] size_t Size() const { return mText ? mText->Size : 0; }
    void Resize(size_t capacity);

    Memory& mMemory;
    Text* mText = nullptr;
};

/// The place of a term, as `InStr` of the platform, quick for plain text.
[[nodiscard]] int64_t FindText(Memory& memory, int64_t start, Text* text, Text* term);

/// `to` becomes `a` with `b` behind it. Grows `a` where it is if `to` is where `a` lies and nobody else has
/// it.
void AppendText(Memory& memory, Slot& to, const Slot& a, const Slot& b);

}  // namespace sorbel::script
