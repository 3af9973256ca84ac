#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "platform/Text.h"

/// What the text functions share: single characters, and eight ASCII bytes at a time.
namespace sorbel::coding {

inline constexpr uint64_t EachByte = 0x0101010101010101u;

/// Eight bytes as a number whose lowest byte is the first one, on any machine.
inline uint64_t LoadWord(const char* bytes) {
    uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word;
}

inline bool IsAscii(uint64_t word) {
    return (word & (EachByte * 0x80)) == 0;
}

/// Lower case of eight ASCII letters; other ASCII bytes stay. A byte's upper bit tells whether it is in A to
/// Z.
inline uint64_t FoldAscii(uint64_t word) {
    const uint64_t fromA = word + EachByte * (0x80 - 'A');
    const uint64_t aboveZ = word + EachByte * (0x80 - 'Z' - 1);
    return word | ((fromA & ~aboveZ & (EachByte * 0x80)) >> 2);
}

inline bool IsAscii(StringView text) {
    size_t at = 0;
    for (; at + 8 <= text.size(); at += 8)
        if (!IsAscii(LoadWord(text.data() + at))) return false;
    for (; at < text.size(); ++at)
        if (static_cast<signed char>(text[at]) < 0) return false;
    return true;
}

/// The last `count` bytes of a text, fewer than eight, as a word filled up with 0. The text may have more.
inline uint64_t LoadTail(StringView text, size_t count) {
    if (count == 0) return 0;
    const char* const end = text.data() + text.size();
    if (text.size() >= 8) return LoadWord(end - 8) >> (64 - 8 * count);
    uint64_t word = 0;
    for (const char* at = end; at != end - count;)
        word = word << 8 | static_cast<unsigned char>(*--at);
    return word;
}

/// Marks the bytes of a word that are `c` by their upper bits. The lowest mark is right; those above it may
/// be false.
inline uint64_t MarkByte(uint64_t word, char c) {
    const uint64_t difference = word ^ (EachByte * static_cast<unsigned char>(c));
    return (difference - EachByte) & ~difference & (EachByte * 0x80);
}

/// Likewise those below `limit`, at most 0x80.
inline uint64_t MarkBelow(uint64_t word, unsigned char limit) {
    return (word - EachByte * limit) & ~word & (EachByte * 0x80);
}

/// The first byte at or behind `from` that `mark` marks; the text's size if there is none.
template <typename Mark>
size_t FindMarked(StringView text, size_t from, Mark mark) {
    for (; text.size() - from >= 8; from += 8)
        if (const uint64_t marks = mark(LoadWord(text.data() + from)))
            return from + static_cast<size_t>(std::countr_zero(marks)) / 8;
    const size_t left = text.size() - from;
    const uint64_t marks = mark(LoadTail(text, left));
    return from + std::min(left, static_cast<size_t>(std::countr_zero(marks)) / 8);
}

struct Decoded {
    int32_t CodePoint;  ///< -1 for a byte that is not part of valid UTF-8
    uint32_t Size;
};

/// The character at `bytes`, of which `available` (at least one) may be read, when its first byte is above
/// 0x7F.
Decoded DecodeLong(const char* bytes, size_t available);

inline Decoded Decode(const char* bytes, size_t available) {
    const auto first = static_cast<unsigned char>(*bytes);
    if (first < 0x80) return {first, 1};
    return DecodeLong(bytes, available);
}

/// Writes a code point as UTF-8 and returns the number of bytes, at most four.
size_t Encode(int32_t codePoint, char* to);

inline char FoldAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
}

/// Simple case folding of one code point that is not ASCII.
int32_t FoldLong(int32_t codePoint);

inline int32_t FoldCodePoint(int32_t codePoint) {
    return codePoint < 0x80 ? FoldAscii(static_cast<char>(codePoint)) : FoldLong(codePoint);
}

/// The folded characters of a text in a form in which bytes can be searched and compared without regard to
/// where characters begin: valid characters as UTF-8, a stray byte as a pair that begins with 0xC0 or 0xC1,
/// which UTF-8 never uses. So no byte of one character is taken for another character. Needs room for
/// `SearchFormRoom` bytes and returns the end of what it wrote.
char* WriteSearchForm(StringView text, char* to);
inline size_t SearchFormRoom(StringView text) {
    return 2 * text.size();  // a stray byte doubles; no folded character grows by more than half
}
String SearchForm(StringView text);

/// One character in search form: the number of bytes written, at most four.
size_t WriteFolded(Decoded character, const char* bytes, char* to);

/// How far up to `limit` characters reach from the head of a text.
struct Span {
    size_t Bytes;
    int64_t Characters;
};
Span Measure(StringView text, int64_t limit);

/// The place of `what` in `text` at or behind `from`, byte by byte, in linear time; `npos` if it is not
/// there.
size_t FindBytes(StringView text, StringView what, size_t from = 0);

}  // namespace sorbel::coding
