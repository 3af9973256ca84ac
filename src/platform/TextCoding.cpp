#include "platform/TextCoding.h"

#include <unicode/uchar.h>

#include <array>

namespace sorbel::coding {

namespace {

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The length that a first byte announces, 0 if it can't begin a character.
uint32_t AnnouncedSize(unsigned char first) {
    if (first < 0xC2 || first > 0xF4) return 0;
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

bool IsScalar(int32_t codePoint, uint32_t size) {
    if (size == 3) return codePoint >= 0x800 && (codePoint < 0xD800 || codePoint > 0xDFFF);
    return size == 2 || (codePoint >= 0x10000 && codePoint <= 0x10FFFF);
}

/// Foldings of the characters of two bytes, which most alphabets consist of.
std::array<uint16_t, 0x800> TwoByteFoldings() {
    std::array<uint16_t, 0x800> foldings = {};
    for (size_t c = 0; c < foldings.size(); ++c)
        foldings[c] = static_cast<uint16_t>(u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT));
    return foldings;
}

}  // namespace

int32_t FoldLong(int32_t codePoint) {
    static const std::array<uint16_t, 0x800> twoBytes = TwoByteFoldings();
    return codePoint < 0x800 ? twoBytes[static_cast<size_t>(codePoint)]
                             : u_foldCase(codePoint, U_FOLD_CASE_DEFAULT);
}

Decoded DecodeLong(const char* bytes, size_t available) {
    constexpr Decoded stray = {-1, 1};
    const auto first = static_cast<unsigned char>(*bytes);
    const uint32_t size = AnnouncedSize(first);
    if (size == 0 || size > available) return stray;
    int32_t codePoint = first & (0x7F >> size);
    for (uint32_t i = 1; i < size; ++i) {
        if (!IsContinuation(bytes[i])) return stray;
        codePoint = codePoint << 6 | (bytes[i] & 0x3F);
    }
    return IsScalar(codePoint, size) ? Decoded{codePoint, size} : stray;
}

size_t Encode(int32_t codePoint, char* to) {
    if (codePoint < 0x80) {
        *to = static_cast<char>(codePoint);
        return 1;
    }
    const size_t size = codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
    for (size_t i = size; --i > 0; codePoint >>= 6)
        to[i] = static_cast<char>(0x80 | (codePoint & 0x3F));
    to[0] = static_cast<char>((0xF00 >> size) | codePoint);
    return size;
}

size_t WriteFolded(Decoded character, const char* bytes, char* to) {
    if (character.CodePoint >= 0) return Encode(FoldCodePoint(character.CodePoint), to);
    const auto stray = static_cast<unsigned char>(*bytes);
    to[0] = static_cast<char>(stray < 0xC0 ? 0xC0 : 0xC1);
    to[1] = static_cast<char>(0x80 | (stray & 0x3F));
    return 2;
}

char* WriteSearchForm(StringView text, char* to) {
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at < end) {
        for (; end - at >= 8; at += 8, to += 8) {
            uint64_t word = LoadWord(at);
            if (!IsAscii(word)) break;
            word = FoldAscii(word);
            if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
            std::memcpy(to, &word, sizeof word);
        }
        if (at == end) break;
        const Decoded character = Decode(at, static_cast<size_t>(end - at));
        to += WriteFolded(character, at, to);
        at += character.Size;
    }
    return to;
}

String SearchForm(StringView text) {
    String form(SearchFormRoom(text), '\0');
    form.resize(static_cast<size_t>(WriteSearchForm(text, form.data()) - form.data()));
    return form;
}

Span Measure(StringView text, int64_t limit) {
    Span span = {0, 0};
    while (span.Characters < limit && span.Bytes < text.size()) {
        const char* const at = text.data() + span.Bytes;
        const size_t left = text.size() - span.Bytes;
        const bool wholeWord = left >= 8 && limit - span.Characters >= 8 && IsAscii(LoadWord(at));
        span.Bytes += wholeWord ? 8 : Decode(at, left).Size;
        span.Characters += wholeWord ? 8 : 1;
    }
    return span;
}

size_t FindBytes(StringView text, StringView what, size_t from) {
    if (from > text.size() || what.size() > text.size() - from) return StringView::npos;
    if (what.empty()) return from;
    const void* found = memmem(text.data() + from, text.size() - from, what.data(), what.size());
    return found ? static_cast<size_t>(static_cast<const char*>(found) - text.data()) : StringView::npos;
}

}  // namespace sorbel::coding
