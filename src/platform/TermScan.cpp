#include "platform/TermScan.h"

#include <unicode/uniset.h>

#include <algorithm>
#include <tuple>

namespace sorbel::coding {

namespace {

// --- Sixteen bytes at a time ---

using Bytes [[gnu::vector_size(16)]] = unsigned char;
using Words [[gnu::vector_size(16)]] = uint64_t;
constexpr ptrdiff_t Step = sizeof(Bytes);

Bytes Load(const char* at) {
    Bytes bytes;
    std::memcpy(&bytes, at, sizeof bytes);
    return bytes;
}

bool Any(Bytes bytes) {
    const auto words = reinterpret_cast<Words>(bytes);
    return (words[0] | words[1]) != 0;
}

/// The place of the first byte that is not 0; there is one.
ptrdiff_t First(Bytes bytes) {
    const auto words = reinterpret_cast<Words>(bytes);
    const auto place = [](uint64_t word) {
        return std::endian::native == std::endian::big ? std::countl_zero(word) / 8
                                                       : std::countr_zero(word) / 8;
    };
    return words[0] != 0 ? place(words[0]) : 8 + place(words[1]);
}

/// Sixteen times what a byte may be.
struct Pattern {
    Bytes Varying, Set;
    Pattern(unsigned char all, unsigned char any)
        : Varying(Bytes{} + static_cast<unsigned char>(all ^ any)), Set(Bytes{} + any) {}
    /// Not 0 where a byte is such.
    [[nodiscard]] Bytes Hits(Bytes bytes) const { return reinterpret_cast<Bytes>((bytes | Varying) == Set); }
};

/// The first place with a hit, or `end`. `hits` reads sixteen bytes and as many that begin `distance` behind.
template <typename Hits>
const char* FirstHit(const char* from, const char* end, ptrdiff_t distance, Hits hits) {
    if (from == end) return end;  // perhaps both null
    // At once where hits are frequent; in greater steps where they are not.
    if (end - from >= Step + distance)
        if (const Bytes found = hits(from); Any(found)) return from + First(found);
    for (; end - from >= 4 * Step + distance; from += 4 * Step)
        if (Any(hits(from) | hits(from + Step) | hits(from + 2 * Step) | hits(from + 3 * Step))) break;
    for (; end - from >= Step + distance; from += Step)
        if (const Bytes found = hits(from); Any(found)) return from + First(found);

    char tail[2 * Step + TermScan::MostDistance] = {};  // the rest, with nothing behind it
    std::memcpy(tail, from, static_cast<size_t>(end - from));
    const Bytes found = hits(tail);
    return Any(found) ? std::min(from + First(found), end) : end;
}

// --- Characters ---

/// Visits the characters that fold to this one, and perhaps some others.
template <typename Visit>
void ForEachSpelling(int32_t folded, Visit visit) {
    constexpr int32_t kelvin = 0x212A, longS = 0x17F;  // the two beyond ASCII that fold to ASCII letters
    visit(folded);
    if (folded < 0x80) {
        if (folded >= 'a' && folded <= 'z') visit(folded - 0x20);
        if (folded == 'k') visit(kelvin);
        if (folded == 's') visit(longS);
        return;
    }
    icu::UnicodeSet spellings(folded, folded);
    spellings.closeOver(USET_CASE_INSENSITIVE);
    for (int32_t index = 0; index < spellings.size(); ++index)
        if (const int32_t spelling = spellings.charAt(index); spelling >= 0) visit(spelling);
}

/// How often texts hold a character, in comparison with others.
size_t Frequency(int32_t character) {
    constexpr StringView common = "zqjxkvbywgpf_.mhdculsnrotaie ";  // the most common last
    if (character >= 0x80) return common.size();  // in most texts with it, nearly all characters are such
    return common.find(static_cast<char>(character)) + 1;
}

constexpr size_t Lone = 1000;  // added where one character is all there is to look for: above any pair

/// The character that ends at a place in the text, which is not its beginning.
Decoded DecodeBefore(StringView text, size_t place) {
    const size_t most = std::min<size_t>(place, 4);
    for (size_t size = 1; size <= most; ++size) {
        const auto byte = static_cast<unsigned char>(text[place - size]);
        if ((byte & 0xC0) == 0x80) continue;  // goes on with a character
        const Decoded character = Decode(text.data() + place - size, size);
        if (character.Size == size) return character;
        break;
    }
    return {-1, 1};
}

bool SameFolded(Decoded inText, Decoded inTerm) {
    return inText.CodePoint >= 0 && FoldCodePoint(inText.CodePoint) == inTerm.CodePoint;
}

}  // namespace

TermScan::TermScan(StringView folded) : mFolded(folded) {
    Likeness before;
    size_t rarity = SIZE_MAX, beforeFrequency = 0;
    for (size_t at = 0; at < folded.size();) {
        const Decoded character = Decode(folded.data() + at, folded.size() - at);
        mCanRun = mCanRun && character.CodePoint >= 0;
        if (!mCanRun) return;
        const Spellings spellings = SpellingsOf(character.CodePoint);
        const size_t frequency = Frequency(character.CodePoint);
        const size_t behind = at + character.Size;
        // A pair, however common, is better than one character; but the distance must be known.
        if (at > 0 && !spellings.DifferInSize() && beforeFrequency + frequency < rarity) {
            rarity = beforeFrequency + frequency;
            std::tie(mFirst, mSecond, mDistance, mBehind) =
                std::tuple(before, spellings.SameSize, spellings.Size, at);
        } else if (mDistance == 0 && Lone + frequency < rarity) {
            rarity = Lone + frequency;
            std::tie(mFirst, mSecond, mBehind) = std::tuple(spellings.SameSize, spellings.OtherSize, behind);
        }
        before = spellings.Each();
        beforeFrequency = frequency;
        at = behind;
    }
}

TermScan::Likeness TermScan::Spellings::Each() const {
    Likeness each = SameSize;
    each.Add(OtherSize);
    return each;
}

TermScan::Spellings TermScan::SpellingsOf(int32_t folded) {
    char bytes[4];
    Spellings spellings{{}, {}, Encode(folded, bytes)};
    ForEachSpelling(folded, [&](int32_t character) {
        const size_t size = Encode(character, bytes);
        const auto last = static_cast<unsigned char>(bytes[size - 1]);
        (size == spellings.Size ? spellings.SameSize : spellings.OtherSize).Add({last, last});
    });
    return spellings;
}

const char* TermScan::Next(const char* from, const char* end) const {
    const Pattern first(mFirst.All, mFirst.Any), second(mSecond.All, mSecond.Any);
    const auto distance = static_cast<ptrdiff_t>(mDistance);
    if (distance == 0)
        return FirstHit(from, end, 0,
                        [&](const char* at) { return first.Hits(Load(at)) | second.Hits(Load(at)); });
    return FirstHit(from, end, distance,
                    [&](const char* at) { return first.Hits(Load(at)) & second.Hits(Load(at + distance)); });
}

std::optional<size_t> TermScan::Match(StringView text, size_t place, int64_t& patience) const {
    size_t end = place + 1;
    for (size_t term = mBehind; term < mFolded.size(); --patience) {
        if (end == text.size()) return std::nullopt;
        const Decoded ours = Decode(text.data() + end, text.size() - end);
        const Decoded theirs = Decode(mFolded.data() + term, mFolded.size() - term);
        if (!SameFolded(ours, theirs)) return std::nullopt;
        end += ours.Size;
        term += theirs.Size;
    }
    size_t begin = place + 1;
    for (size_t term = mBehind; term > 0; --patience) {
        if (begin == 0) return std::nullopt;
        const Decoded ours = DecodeBefore(text, begin);
        const Decoded theirs = DecodeBefore(mFolded, term);
        if (!SameFolded(ours, theirs)) return std::nullopt;
        begin -= ours.Size;
        term -= theirs.Size;
    }
    return begin;
}

}  // namespace sorbel::coding
