#include <utility>

#include "platform/TextCoding.h"

namespace sorbel {

using namespace coding;

namespace {

/// Mixes the folded bytes of a text, eight at a time.
class FoldedHasher {
  public:
    void AddWord(uint64_t word) {
        mState = (mState ^ word) * 0x9E3779B97F4A7C15u;
        mState ^= mState >> 32;
        mSize += 8;
    }
    void AddBytes(const char* bytes, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            mPending |= static_cast<uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * mPendingSize);
            if (++mPendingSize < 8) continue;
            AddWord(std::exchange(mPending, 0));
            mPendingSize = 0;
        }
    }
    /// The last bytes, at most seven, the others being 0; only if no bytes are pending.
    void AddTail(uint64_t word, size_t count) {
        mPending = word;
        mPendingSize = count;
    }
    /// The size tells a zero byte from none.
    [[nodiscard]] uint32_t Result() const {
        const uint64_t last = (mState ^ mPending) * 0xD6E8FEB86659FD93u;
        return static_cast<uint32_t>(((last ^ (last >> 32) ^ (mSize + mPendingSize)) * 0x9E3779B97F4A7C15u) >>
                                     32);
    }

  private:
    uint64_t mState = 0;
    uint64_t mPending = 0;
    size_t mPendingSize = 0;
    size_t mSize = 0;
};

void AddCharacters(FoldedHasher& hasher, StringView text) {
    char folded[4];
    while (!text.empty()) {
        const Decoded character = Decode(text.data(), text.size());
        hasher.AddBytes(folded, WriteFolded(character, text.data(), folded));
        text.remove_prefix(character.Size);
    }
}

/// Moves both places over the ASCII words that are equal. False if a difference has been met.
bool SkipEqualAscii(StringView& a, StringView& b) {
    while (a.size() >= 8 && b.size() >= 8) {
        const uint64_t first = LoadWord(a.data());
        const uint64_t second = LoadWord(b.data());
        if (!IsAscii(first | second)) return true;
        if (FoldAscii(first) != FoldAscii(second)) return false;
        a.remove_prefix(8);
        b.remove_prefix(8);
    }
    return true;
}

bool SkipEqualCharacter(StringView& a, StringView& b) {
    const Decoded first = Decode(a.data(), a.size());
    const Decoded second = Decode(b.data(), b.size());
    if (first.CodePoint < 0 || second.CodePoint < 0) {
        if (first.CodePoint != second.CodePoint || a[0] != b[0]) return false;
    } else if (first.CodePoint != second.CodePoint &&
               FoldCodePoint(first.CodePoint) != FoldCodePoint(second.CodePoint)) {
        return false;
    }
    a.remove_prefix(first.Size);
    b.remove_prefix(second.Size);
    return true;
}

}  // namespace

bool Equal(StringView a, StringView b) {
    if (a == b) return true;
    while (SkipEqualAscii(a, b)) {
        if (a.empty() || b.empty()) return a.empty() && b.empty();
        if (!SkipEqualCharacter(a, b)) return false;
    }
    return false;
}

uint32_t FoldedHash(StringView text) {
    FoldedHasher hasher;
    size_t at = 0;
    for (; text.size() - at >= 8; at += 8) {
        const uint64_t word = LoadWord(text.data() + at);
        if (!IsAscii(word)) break;
        hasher.AddWord(FoldAscii(word));
    }
    const StringView rest = text.substr(at);
    const uint64_t tail = rest.size() < 8 ? LoadTail(text, rest.size()) : EachByte * 0x80;
    if (IsAscii(tail))
        hasher.AddTail(FoldAscii(tail), rest.size());
    else
        AddCharacters(hasher, rest);
    return hasher.Result();
}

int StrComp(StringView a, StringView b, [[maybe_unused]] int mode) {
    return a.compare(b);
}

namespace {

/// The bytes of a folded text, one character after the other.
class FoldedBytes {
  public:
    explicit FoldedBytes(StringView text) : mRest(text) {}

    /// Empty at the end.
    StringView NextCharacter() {
        if (mRest.empty()) return {};
        const Decoded character = Decode(mRest.data(), mRest.size());
        size_t size = 1;
        if (character.CodePoint < 0)
            mFolded[0] = mRest[0];
        else
            size = Encode(FoldCodePoint(character.CodePoint), mFolded);
        mRest.remove_prefix(character.Size);
        return {mFolded, size};
    }
    /// -1 at the end.
    int Next() {
        if (mNow.empty()) mNow = NextCharacter();
        if (mNow.empty()) return -1;
        const auto byte = static_cast<unsigned char>(mNow[0]);
        mNow.remove_prefix(1);
        return byte;
    }

  private:
    StringView mRest, mNow;
    char mFolded[4] = {};
};

}  // namespace

String Fold(StringView text) {
    String folded;
    folded.reserve(text.size());
    FoldedBytes bytes(text);
    for (StringView next = bytes.NextCharacter(); !next.empty(); next = bytes.NextCharacter())
        folded += next;
    return folded;
}

int CompareFolded(StringView a, StringView b) {
    FoldedBytes first(a), second(b);
    for (;;) {
        const int one = first.Next(), other = second.Next();
        if (one != other) return one - other;
        if (one < 0) return 0;
    }
}

}  // namespace sorbel
