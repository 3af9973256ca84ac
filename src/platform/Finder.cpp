#include "platform/Finder.h"

#include <algorithm>
#include <utility>

namespace sorbel {

using namespace coding;

namespace {

constexpr ptrdiff_t LeastAhead = 128, MostAhead = 65536;
constexpr uintptr_t Gap = 4096;  // between two texts that follow each other

}  // namespace

Finder::Finder(StringView term, std::vector<StringView> blocks)
    : mFolded(SearchForm(term)), mScan(mFolded), mBlocks(std::move(blocks)) {}

bool Finder::LookAt(StringView text) const {
    if (!mScan.CanRun()) return !IsAscii(text) && IsInForm(text);
    const char* const end = text.data() + text.size();
    const bool inBlock = EnterBlock(text);
    int64_t patience = TermScan::Patience(text);
    for (const char* at = text.data(); patience > 0; ++at) {
        at = inBlock ? SweepTo(at, end) : mScan.Next(at, end);
        if (at >= end) return false;
        if (mScan.Match(text, static_cast<size_t>(at - text.data()), patience)) return true;
    }
    return IsInForm(text);
}

bool Finder::IsInForm(StringView text) const {
    const size_t room = SearchFormRoom(text);
    if (mForm.size() < room) mForm.resize(room);
    const char* const end = WriteSearchForm(text, mForm.data());
    return FindBytes({mForm.data(), static_cast<size_t>(end - mForm.data())}, mFolded) != String::npos;
}

/// The first place at or behind `from` that is worth a look, or one that is not before `end`. As long as the
/// texts come in order the sweep runs ahead, ever farther; texts in disorder are looked at one by one.
const char* Finder::SweepTo(const char* from, const char* end) const {
    const bool seen = Seen(from);
    if (seen && mSeenEnd >= end) return mSeenEnd;
    const bool inOrder = Address(from) - Address(mSeen) <= Address(mSeenEnd) - Address(mSeen) + Gap;
    mAhead = inOrder ? std::clamp(2 * mAhead, LeastAhead, MostAhead) : 0;
    const char* const limit = end + std::min(mAhead, mBlock.data() + mBlock.size() - end);
    // Two characters that the last limit parted have not been seen.
    const char* const parted = mSeenEnd - std::min(TermScan::MostDistance, mSeenEnd - mSeen);
    const char* const start = seen ? std::max(from, parted) : from;
    if (!seen) mSeen = from;
    return mSeenEnd = mScan.Next(start, limit);
}

/// Whether the text lies in one of the blocks, which becomes the one that is swept.
bool Finder::EnterBlock(StringView text) const {
    const auto holdsText = [&](StringView block) {
        const uintptr_t place = Address(text.data()) - Address(block.data());
        return place <= block.size() && text.size() <= block.size() - place;
    };
    if (holdsText(mBlock)) return true;
    const auto block = std::ranges::find_if(mBlocks, holdsText);
    if (block == mBlocks.end()) return false;
    mBlock = *block;
    return true;
}

}  // namespace sorbel
