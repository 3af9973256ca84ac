#include "platform/ByteScan.h"

#include <array>
#include <bit>
#include <cstring>

#include "platform/TextCoding.h"

namespace sorbel::coding {

namespace {

constexpr size_t BlockSize = 64;

/// Sixteen bytes that are compared at once.
using Bytes = unsigned char __attribute__((vector_size(16)));

Bytes Load(const char* from) {
    Bytes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

Bytes Repeat(char c) {
    return Bytes{} + static_cast<unsigned char>(c);
}

/// The places of a pair of bytes among sixteen starts: 0xFF where both are.
class PairFilter {
  public:
    PairFilter(StringView what, size_t first, size_t second)
        : mFirstByte(Repeat(what[first])),
          mSecondByte(Repeat(what[second])),
          mFirst(first),
          mSecond(second) {}

    [[nodiscard]] Bytes operator()(const char* start) const {
        const auto first = Load(start + mFirst) == mFirstByte;
        const auto second = Load(start + mSecond) == mSecondByte;
        return reinterpret_cast<Bytes>(first & second);
    }

  private:
    Bytes mFirstByte, mSecondByte;
    size_t mFirst, mSecond;
};

std::array<uint64_t, 2> Words(Bytes bytes) {
    std::array<char, sizeof bytes> stored{};
    std::memcpy(stored.data(), &bytes, sizeof bytes);
    return {LoadWord(stored.data()), LoadWord(stored.data() + 8)};
}

bool Any(Bytes bytes) {
    const auto [low, high] = Words(bytes);
    return (low | high) != 0;
}

}  // namespace

size_t RarestPlace(StringView what, size_t besides) {
    constexpr StringView common = "zqjxkvbywgpf_.mhdculsnrotaie ";  // the most common last
    size_t rarest = besides == 0 && what.size() > 1 ? 1 : 0;
    for (size_t place = rarest + 1; place < what.size(); ++place)
        if (place != besides && common.find(what[place]) + 1 < common.find(what[rarest]) + 1) rarest = place;
    return rarest;
}

ByteScan::ByteScan(StringView text, StringView what)
    : mText(text),
      mWhat(what),
      mRarest(RarestPlace(what)),
      mSecond(RarestPlace(what, mRarest)),
      mPatience(4 * static_cast<int64_t>(text.size()) + 64) {}

size_t ByteScan::Find(size_t from) {
    const PairFilter pair(mWhat, mRarest, mSecond);
    size_t at = from;
    for (; mPatience >= 0 && at + BlockSize + mWhat.size() <= mText.size(); at += BlockSize) {
        const char* const start = mText.data() + at;
        if (!Any(pair(start) | pair(start + 16) | pair(start + 32) | pair(start + 48))) continue;
        const size_t found = FindInBlock(at);
        if (found != StringView::npos) return found;
    }
    return FindBytes(mText, mWhat, at);
}

size_t ByteScan::FindInBlock(size_t at) {
    const PairFilter pair(mWhat, mRarest, mSecond);
    for (size_t start = at; start < at + BlockSize; start += 8) {
        const size_t sixteen = start - (start - at) % 16;
        uint64_t hits = Words(pair(mText.data() + sixteen))[(start - sixteen) / 8];
        for (; hits != 0; hits &= ~(uint64_t{0xFF} << (std::countr_zero(hits) & ~7))) {
            const size_t place = start + static_cast<size_t>(std::countr_zero(hits)) / 8;
            mPatience -= static_cast<int64_t>(mWhat.size());
            if (std::memcmp(mText.data() + place, mWhat.data(), mWhat.size()) == 0) return place;
        }
    }
    return StringView::npos;
}

}  // namespace sorbel::coding
