// Sorts numbers that hold some bytes of the texts, since they lie together, unlike the texts: many by
// counting, a byte at a time, few by comparison.
#include "interchange/ByteOrder.h"

#include <algorithm>
#include <array>
#include <span>

#include "platform/TextCoding.h"

namespace sorbel {

using namespace coding;

namespace {

constexpr size_t HeadSize = 7;
constexpr uint64_t More = HeadSize + 1;

/// Seven bytes, the first one uppermost, and below them how many bytes there are, `More` at most: it tells a
/// zero byte from none.
uint64_t HeadAt(StringView text, size_t depth) {
    const StringView rest = text.substr(depth);
    if (rest.size() <= HeadSize) return __builtin_bswap64(LoadTail(text, rest.size())) | rest.size();
    return (__builtin_bswap64(LoadWord(rest.data())) & ~uint64_t{0xFF}) | More;
}

struct Headed {
    uint64_t Head;
    uint32_t Place;

    [[nodiscard]] size_t ByteAt(int shift) const { return (Head >> shift) & 0xFF; }
};
using Part = std::span<Headed>;

class Sorter {
  public:
    explicit Sorter(const std::vector<StringView>& texts) : mTexts(texts), mSpare(texts.size()) {}

    /// Sorts texts that are alike up to `depth`. Those alike far beyond it are compared, so that this does
    /// not go down without a limit.
    void Sort(Part part, size_t depth) {
        constexpr size_t few = 4, deepest = 16 * HeadSize;
        if (part.size() <= few || depth == deepest) {
            std::sort(part.begin(), part.end(), [&](const Headed& a, const Headed& b) {
                return mTexts[a.Place].substr(depth) < mTexts[b.Place].substr(depth);
            });
            return;
        }
        constexpr size_t ahead = 8;
        for (size_t i = 0; i < part.size(); ++i) {
            if (i + ahead < part.size()) __builtin_prefetch(mTexts[part[i + ahead].Place].data() + depth);
            part[i].Head = HeadAt(mTexts[part[i].Place], depth);
        }
        SortHeads(part, 56, depth);
    }

  private:
    /// Sorts by the heads, which are alike above the byte at `shift`, and what follows where they are alike.
    void SortHeads(Part part, int shift, size_t depth) {
        constexpr size_t fewerThanCounters = 64;
        if (part.size() <= fewerThanCounters) {
            std::sort(part.begin(), part.end(), [](auto& a, auto& b) { return a.Head < b.Head; });
            SortAlike(part, depth);
            return;
        }
        size_t start = 0;
        for (const size_t end : Distribute(part, shift)) {
            const Part alike = part.subspan(start, end - start);
            start = end;
            if (alike.size() < 2) continue;
            if (shift > 0)
                SortHeads(alike, shift - 8, depth);
            else
                SortAlike(alike, depth);
        }
    }

    /// Sorts by what follows the heads, which are in order.
    void SortAlike(Part part, size_t depth) {
        for (size_t start = 0, end = 0; start < part.size(); start = end) {
            while (end < part.size() && part[end].Head == part[start].Head)
                ++end;
            const bool hasMore = part[start].ByteAt(0) == More;
            if (hasMore && end - start > 1) Sort(part.subspan(start, end - start), depth + HeadSize);
        }
    }

    /// Orders by the byte at `shift` alone; the ends of the texts with each byte.
    std::array<uint32_t, 256> Distribute(Part part, int shift) {
        std::array<uint32_t, 256> ends = {};
        for (const Headed& one : part)
            ++ends[one.ByteAt(shift)];
        const bool allAlike = ends[part[0].ByteAt(shift)] == part.size();
        for (size_t i = 1; i < ends.size(); ++i)
            ends[i] += ends[i - 1];
        if (allAlike) return ends;
        std::array<uint32_t, 256> next = {};
        std::copy(ends.begin(), ends.end() - 1, next.begin() + 1);
        for (const Headed& one : part)
            mSpare[next[one.ByteAt(shift)]++] = one;
        std::copy_n(mSpare.begin(), part.size(), part.begin());
        return ends;
    }

    const std::vector<StringView>& mTexts;
    std::vector<Headed> mSpare;
};

}  // namespace

std::vector<uint32_t> ByteOrder(const std::vector<StringView>& texts) {
    std::vector<Headed> headed(texts.size());
    for (size_t i = 0; i < headed.size(); ++i)
        headed[i].Place = static_cast<uint32_t>(i);
    Sorter(texts).Sort(headed, 0);
    std::vector<uint32_t> places(texts.size());
    std::transform(headed.begin(), headed.end(), places.begin(), [](const Headed& one) { return one.Place; });
    return places;
}

}  // namespace sorbel
