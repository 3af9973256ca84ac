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
[[nodiscard]] int64_t FindText(Memory& memory, int64_t start, Text* text, Text* term);

/// `to` becomes `a` with `b` behind it. Grows `a` where it is if `to` is where `a` lies and nobody else has
/// it.
void AppendText(Memory& memory, Slot& to, const Slot& a, const Slot& b);

}  // namespace sorbel::script
