// Damages locale files where their structure is: chunks are repeated, moved, nested and given other lengths
// and tags. Bytes alone seldom get past a length that no longer fits.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>

#include "platform/Text.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t mostSize) __attribute__((weak));

namespace sorbel::fuzz {

namespace {

const StringView Magic = "nvlocale";
const StringView Tags[] = {"vers", "date", "nvvs", "lang", "appl", "enty", "hist", "idnt",
                           "oval", "tval", "plat", "chng", "strn", "bind", "long", "what"};

String Int(uint32_t value) {
    value = __builtin_bswap32(value);
    return {reinterpret_cast<const char*>(&value), 4};
}

uint32_t IntAt(StringView bytes, size_t at) {
    uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, 4);
    return __builtin_bswap32(value);
}

String History(StringView file) {
    const auto size = static_cast<uint32_t>(file.size());
    return "hist" + Int(size + 8) + "bind" + Int(size) + String(file);
}

// Versions inside versions, each with some empty entries and nothing else.
String Nested(uint32_t levels, uint32_t entries) {
    String all;
    const uint32_t own = 8 + 8 * entries + 16;
    for (uint32_t inside = levels; inside > 0; --inside) {
        const uint32_t size = (inside - 1) * own + 8 + 8 * entries;
        all += "hist" + Int(size + 8) + "bind" + Int(size) + String(Magic);
        for (uint32_t i = 0; i < entries; ++i)
            all += "enty" + Int(0);
    }
    return all;
}

class Mutator {
  public:
    Mutator(StringView file, uint32_t seed) : mRandom(seed), mSource(file), mBytes(file) {}

    String Mutate() {
        for (size_t rounds = 1 + Below(4); rounds > 0; --rounds)
            MutateOnce();
        return std::move(mBytes);
    }

  private:
    size_t Below(size_t limit) { return limit == 0 ? 0 : mRandom() % limit; }
    size_t Place() { return Below(mBytes.size() + 1); }
    String Slice(StringView bytes) {
        const size_t at = Below(bytes.size());
        return String(bytes.substr(at, Below(std::min<size_t>(bytes.size() - at, 2000) + 1)));
    }
    // Where a tag begins, so that damage meets the structure and not only the texts; the end if there is
    // none.
    size_t TagPlace(StringView tag) {
        size_t found = mBytes.find(tag, Place());
        if (found == String::npos) found = mBytes.find(tag);
        return found == String::npos || found + 8 > mBytes.size() ? mBytes.size() : found;
    }
    StringView AnyTag() { return Tags[Below(std::size(Tags))]; }

    void MutateOnce() {
        switch (Below(11)) {
            case 0:
                FlipBits();
                break;
            case 1:
            case 2:
            case 3:
                ChangeLength();
                break;
            case 4:
                ReplaceTag();
                break;
            case 5:
                mBytes.insert(Place(), Slice(mBytes));
                break;
            case 6:
                mBytes.erase(Below(mBytes.size()), Below(200));
                break;
            case 7:
                mBytes.resize(Place());
                break;
            case 8:
                RepeatChunk();
                break;
            case 9:
                mBytes.insert(TagPlace("enty"), Slice(mSource));
                break;
            default:
                InsertHistory();
        }
    }

    void FlipBits() {
        if (mBytes.empty()) return;
        for (size_t flips = 1 + Below(8); flips > 0; --flips)
            mBytes[Below(mBytes.size())] ^= static_cast<char>(1 << Below(8));
    }

    void ChangeLength() {
        const size_t at = TagPlace(AnyTag());
        if (at == mBytes.size()) return;
        const auto size = static_cast<uint32_t>(mBytes.size());
        const uint32_t old = IntAt(mBytes, at + 4);
        const uint32_t lengths[] = {0,       1,       3,       5,          UINT32_MAX, 0xFFFFFFF8,
                                    size,    old + 1, old - 1, 0x7FFFFFFF, 0x80000000, old + 4,
                                    old - 4, old * 2, old + 8, size - old, old + 100,  uint32_t(mRandom())};
        mBytes.replace(at + 4, 4, Int(lengths[Below(std::size(lengths))]));
    }

    void ReplaceTag() {
        const size_t at = TagPlace(AnyTag());
        if (at < mBytes.size()) mBytes.replace(at, 4, AnyTag());
    }

    void RepeatChunk() {
        const size_t at = TagPlace("enty");
        if (at == mBytes.size()) return;
        const String chunk = mBytes.substr(at, std::min<size_t>(IntAt(mBytes, at + 4), 1000) + 8);
        for (size_t times = 1 + Below(Below(4) ? 4 : 300); times > 0; --times)
            mBytes.insert(at, chunk);
    }

    void InsertHistory() {
        const size_t at = Below(2) ? TagPlace("enty") : mBytes.size();
        switch (Below(3)) {
            case 0:
                mBytes.insert(at, History(mBytes));
                break;
            case 1:
                mBytes.insert(at, History(String(Magic) + Slice(mBytes)));
                break;
            default:
                mBytes.insert(at, Nested(uint32_t(Below(Below(4) ? 4 : 3000)), uint32_t(Below(3))));
        }
    }

    std::mt19937 mRandom;
    StringView mSource;
    String mBytes;
};

}  // namespace

}  // namespace sorbel::fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t mostSize, unsigned seed) {
    if (LLVMFuzzerMutate && seed % 2) return LLVMFuzzerMutate(data, size, mostSize);
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    const std::string changed = sorbel::fuzz::Mutator(file, seed).Mutate();
    const size_t count = std::min(changed.size(), mostSize);
    std::copy_n(changed.begin(), count, data);
    return count;
}
