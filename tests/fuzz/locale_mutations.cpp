// Damages a locale file in many ways, always the same ones, and reads, saves and copies what comes of it.
//   locale_mutations FILE [COUNT]
// Ends with 1 where a property breaks: what was read is saved as a valid file with the same contents, a copy
// outlives what it was made from, and the memory stays within a small multiple of the file.
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <random>

#include "stringset/LocalizedStringSet.h"

namespace {

int64_t LiveBytes = 0, PeakBytes = 0;

void* Allocate(size_t size) {
    void* const block = std::malloc(size);
    if (!block) throw std::bad_alloc();
    LiveBytes += static_cast<int64_t>(malloc_usable_size(block));
    PeakBytes = std::max(PeakBytes, LiveBytes);
    return block;
}

void Free(void* block) {
    if (block) LiveBytes -= static_cast<int64_t>(malloc_usable_size(block));
    std::free(block);
}

}  // namespace

void* operator new(size_t size) {
    return Allocate(size);
}
void* operator new[](size_t size) {
    return Allocate(size);
}
void operator delete(void* block) noexcept {
    Free(block);
}
void operator delete[](void* block) noexcept {
    Free(block);
}
void operator delete(void* block, size_t) noexcept {
    Free(block);
}
void operator delete[](void* block, size_t) noexcept {
    Free(block);
}

namespace sorbel {

namespace {

// Memory for opening and saving, per byte of the file. A nested version of 32 bytes, with one entry of 8, is
// the dearest: a set object, its lists of one element each, its place in the list around it, its frames while
// it is read and written and the 187 bytes that it is saved as come to some 950 bytes, so 30 for each of its
// own. A third more is left for other libraries' rounding.
constexpr double MemoryBound = 40;
constexpr size_t SmallFile = 4096;  // below this size the memory counts as if it were for so many bytes

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
    Mutator(StringView sample, uint32_t seed) : mRandom(seed), mSample(sample), mBytes(sample) {}

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
        const size_t found = mBytes.find(tag, Place());
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
                mBytes.insert(TagPlace("enty"), Slice(mSample));
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
        const uint32_t lengths[] = {0,
                                    1,
                                    3,
                                    5,
                                    UINT32_MAX,
                                    0xFFFFFFF8,
                                    size,
                                    0x7FFFFFFF,
                                    0x80000000,
                                    old + 1,
                                    old - 1,
                                    old + 4,
                                    old - 4,
                                    old * 2,
                                    old + 100,
                                    size - old,
                                    uint32_t(mRandom())};
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
        for (size_t times = 1 + Below(300); times > 0; --times)
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
                mBytes.insert(at, Nested(uint32_t(Below(3000)), uint32_t(Below(3))));
        }
    }

    std::mt19937 mRandom;
    StringView mSample;
    String mBytes;
};

bool SameEntries(const LocalizedStringSet& a, const LocalizedStringSet& b) {
    if (a.Entries.Count() != b.Entries.Count() || a.Language != b.Language) return false;
    for (int64_t i = 0; i < a.Entries.Count(); ++i) {
        const PlatformTable &ours = a.Entries.ValueAt(i), &theirs = b.Entries.ValueAt(i);
        if (a.Entries.KeyAt(i).View() != b.Entries.KeyAt(i).View() || ours.Count() != theirs.Count())
            return false;
        for (int64_t j = 0; j < ours.Count(); ++j) {
            const PlatformTable::Item &x = ours.ItemAt(j), &y = theirs.ItemAt(j);
            if (x.Platform != y.Platform || x.Value.Localized.View() != y.Value.Localized.View() ||
                x.Value.Original.View() != y.Value.Original.View())
                return false;
        }
    }
    return true;
}

bool Same(const LocalizedStringSet& a, const LocalizedStringSet& b) {
    std::vector<std::pair<const LocalizedStringSet*, const LocalizedStringSet*>> pairs = {{&a, &b}};
    while (!pairs.empty()) {
        const auto [x, y] = pairs.back();
        pairs.pop_back();
        if (!SameEntries(*x, *y) || x->History.size() != y->History.size()) return false;
        if (x->DateGenerated != y->DateGenerated || x->NorvaneVersion != y->NorvaneVersion) return false;
        for (size_t i = 0; i < x->History.size(); ++i)
            pairs.emplace_back(x->History[i].get(), y->History[i].get());
    }
    return true;
}

std::shared_ptr<const ByteBuffer> Buffer(StringView bytes) {
    auto buffer = std::make_shared<ByteBuffer>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), buffer->Data());
    return buffer;
}

struct Totals {
    int64_t Valid = 0, Invalid = 0, Exceptions = 0;
    double Ratio = 0;
};

// The property that does not hold, or null.
const char* Check(StringView bytes, Totals& totals) {
    PeakBytes = LiveBytes;
    const int64_t before = LiveBytes;
    auto set = std::make_shared<LocalizedStringSet>();
    try {
        ++(set->ReadBytes(Buffer(bytes)) ? totals.Valid : totals.Invalid);
    } catch (const RuntimeException&) {
        ++totals.Exceptions;
    }
    const String saved = set->ToBytes();
    const double ratio = double(PeakBytes - before) / double(std::max(bytes.size(), SmallFile));
    totals.Ratio = std::max(totals.Ratio, ratio);
    if (ratio > MemoryBound) return "too much memory";

    const auto clone = set->Clone();
    const auto again = std::make_shared<LocalizedStringSet>();
    if (!again->ReadBytes(Buffer(saved))) return "what was saved is not valid";
    if (!Same(*set, *again)) return "what was saved differs from what was read";
    if (again->ToBytes() != saved) return "a second save differs from the first";
    set.reset();
    if (!SameEntries(*clone, *again)) return "the copy differs";
    return nullptr;
}

int Run(const char* path, int64_t count) {
    const auto sample = ReadContents(FolderItem(path));
    Totals totals;
    for (int64_t i = 0; i < count; ++i) {
        const String bytes = Mutator(sample->View(), static_cast<uint32_t>(i)).Mutate();
        if (const char* failure = Check(bytes, totals)) {
            std::printf("mutation %lld: %s\n", static_cast<long long>(i), failure);
            return 1;
        }
    }
    std::printf(
        "%lld mutations, largest memory peak / file size %.1f, %lld invalid, %lld valid, %lld exceptions\n",
        static_cast<long long>(count), totals.Ratio, static_cast<long long>(totals.Invalid),
        static_cast<long long>(totals.Valid), static_cast<long long>(totals.Exceptions));
    return 0;
}

}  // namespace

}  // namespace sorbel

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    return sorbel::Run(argv[1], argc > 2 ? std::atoll(argv[2]) : 2000);
}
