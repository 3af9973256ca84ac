#include "platform/TextCoding.h"

namespace sorbel {

using namespace coding;

namespace {

constexpr int32_t Replacement = 0xFFFD;

char* WriteUnit(char* to, int32_t unit) {
    to[0] = static_cast<char>(unit >> 8);
    to[1] = static_cast<char>(unit);
    return to + 2;
}

/// The unit or, beyond the basic plane, the two.
char* WriteUnits(char* to, int32_t codePoint) {
    if (codePoint < 0x10000) return WriteUnit(to, codePoint);
    to = WriteUnit(to, 0xD800 + ((codePoint - 0x10000) >> 10));
    return WriteUnit(to, 0xDC00 + ((codePoint - 0x10000) & 0x3FF));
}

/// Needs two bytes of room for each of the text's, and returns the end of what it wrote.
char* WriteUtf16BE(StringView text, char* to) {
    while (!text.empty()) {
        while (text.size() >= 8 && IsAscii(LoadWord(text.data()))) {
            for (size_t i = 0; i < 8; ++i)
                to = WriteUnit(to, text[i]);
            text.remove_prefix(8);
        }
        if (text.empty()) break;
        const Decoded character = Decode(text.data(), text.size());
        to = WriteUnits(to, character.CodePoint < 0 ? Replacement : character.CodePoint);
        text.remove_prefix(character.Size);
    }
    return to;
}

bool IsCharacter(int32_t codePoint) {
    return codePoint >= 0 && codePoint <= 0x10FFFF && (codePoint < 0xD800 || codePoint > 0xDFFF);
}

}  // namespace

String Chr(int32_t codePoint) {
    char bytes[4];
    return {bytes, Encode(IsCharacter(codePoint) ? codePoint : Replacement, bytes)};
}

String ChrB(uint8_t byte) {
    return String(1, static_cast<char>(byte));
}

String EncodeUtf16BE(StringView text) {
    String units;
    EncodeUtf16BE(text, units);
    return units;
}

void EncodeUtf16BE(StringView text, String& to) {
    const size_t before = to.size();
    to.resize(before + 2 * text.size());
    const char* const end = WriteUtf16BE(text, to.data() + before);
    to.resize(static_cast<size_t>(end - to.data()));
}

}  // namespace sorbel
