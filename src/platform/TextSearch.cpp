#include <algorithm>
#include <bit>
#include <optional>

#include "platform/ByteScan.h"
#include "platform/TextCoding.h"

namespace sorbel {

using namespace coding;

namespace {

/// Looks for a folded ASCII term in ASCII text without a folded copy of the text.
class AsciiScan {
  public:
    AsciiScan(StringView text, StringView term, size_t rarest)
        : mText(text), mTerm(term), mRarest(rarest), mPatience(4 * static_cast<int64_t>(text.size()) + 64) {}

    /// The place of the term, `npos` if it is not there. Nothing if that can't be told here: the text is not
    /// ASCII up to that place, or so repetitive that comparing at every place would take too long.
    std::optional<size_t> Run() {
        const size_t end = mText.size() - mText.size() % 8;
        for (size_t at = 0; at < end; at += 8)
            if (Visit(LoadWord(mText.data() + at), at)) return mResult;
        if (Visit(LoadTail(mText, mText.size() - end), end)) return mResult;
        return StringView::npos;
    }

  private:
    /// Compares wherever the rarest byte is in these eight. True when the search is over.
    bool Visit(uint64_t word, size_t at) {
        if (!IsAscii(word)) return true;
        const uint64_t other = FoldAscii(word) ^ (EachByte * static_cast<unsigned char>(mTerm[mRarest]));
        // A byte that is 0 here is the one looked for, and the only one whose upper bit stays off.
        uint64_t hits = ~(other + EachByte * 0x7F) & (EachByte * 0x80);
        for (; hits != 0; hits &= hits - 1) {
            const size_t place = at + static_cast<size_t>(std::countr_zero(hits)) / 8 - mRarest;
            if (place < mText.size() && mTerm.size() <= mText.size() - place && Matches(place)) {
                mResult = place;
                return true;
            }
        }
        return mPatience < 0;
    }

    bool Matches(size_t place) {
        size_t same = 0;
        while (same < mTerm.size() && FoldAscii(mText[place + same]) == mTerm[same])
            ++same;
        mPatience -= static_cast<int64_t>(same);
        return same == mTerm.size();
    }

    StringView mText, mTerm;
    size_t mRarest;
    int64_t mPatience;
    std::optional<size_t> mResult;
};

/// Characters in search form: all bytes but those that go on with one.
int64_t CountCharacters(StringView form) {
    return std::ranges::count_if(form, [](char c) { return (c & 0xC0) != 0x80; });
}

}  // namespace

int64_t InStr(int64_t start, StringView text, StringView term) {
    const int64_t skipped = std::max<int64_t>(start, 1) - 1;
    const Span span = Measure(text, skipped);
    if (span.Characters < skipped) return 0;
    text.remove_prefix(span.Bytes);
    if (term.empty()) return skipped + 1;

    const String folded = SearchForm(term);
    if (IsAscii(folded)) {
        const auto place = AsciiScan(text, folded, RarestPlace(folded)).Run();
        if (place) return *place == String::npos ? 0 : skipped + static_cast<int64_t>(*place) + 1;
    }
    const String form = SearchForm(text);
    const size_t place = FindBytes(form, folded);
    return place == String::npos ? 0 : skipped + CountCharacters(StringView(form).substr(0, place)) + 1;
}

Finder::Finder(StringView term)
    : mFolded(SearchForm(term)), mRarest(RarestPlace(mFolded)), mAscii(IsAscii(StringView(mFolded))) {}

bool Finder::IsIn(StringView text) const {
    if (mFolded.empty()) return true;
    if (mAscii) {
        const auto place = AsciiScan(text, mFolded, mRarest).Run();
        if (place) return *place != String::npos;
    } else if (IsAscii(text)) {
        return false;
    }
    const size_t room = SearchFormRoom(text);
    if (mBuffer.size() < room) mBuffer.resize(room);
    const char* const end = WriteSearchForm(text, mBuffer.data());
    return FindBytes({mBuffer.data(), static_cast<size_t>(end - mBuffer.data())}, mFolded) != String::npos;
}

}  // namespace sorbel
