#include "platform/TextCoding.h"

namespace sorbel {

using namespace coding;

namespace {

constexpr int32_t Replacement = 0xFFFD;

void AppendUnit(String& to, int32_t unit) {
    to += static_cast<char>(unit >> 8);
    to += static_cast<char>(unit);
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
    units.reserve(2 * text.size());
    while (!text.empty()) {
        const Decoded character = Decode(text.data(), text.size());
        const int32_t codePoint = character.CodePoint < 0 ? Replacement : character.CodePoint;
        if (codePoint < 0x10000) {
            AppendUnit(units, codePoint);
        } else {
            AppendUnit(units, 0xD800 + ((codePoint - 0x10000) >> 10));
            AppendUnit(units, 0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        }
        text.remove_prefix(character.Size);
    }
    return units;
}

}  // namespace sorbel
