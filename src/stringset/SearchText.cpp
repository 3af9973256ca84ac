#include "stringset/SearchText.h"

#include <algorithm>
#include <iterator>

#include "platform/ByteScan.h"
#include "platform/TextCoding.h"

namespace sorbel {

namespace {

constexpr char Separator = '\xFF';  // no text has it in this form

template <typename Use>
void ForEachText(const SharedText& identifier, const PlatformTable& entry, Use use) {
    use(identifier.View());
    for (int64_t index = 0; index < entry.Count(); ++index) {
        const EntryValue& value = entry.ItemAt(index).Value;
        use(value.Original.View());
        use(value.Localized.View());
    }
}

}  // namespace

/// The room is what folding can take at most; what it does not take is never touched.
SearchText::SearchText(const Dictionary<SharedText, PlatformTable>& entries) {
    size_t room = 0;
    for (const auto& [identifier, entry] : entries)
        ForEachText(identifier, entry, [&](StringView text) { room += coding::SearchFormRoom(text) + 1; });
    mText = std::make_unique_for_overwrite<char[]>(room);
    mEnds.reserve(static_cast<size_t>(entries.Count()));
    char* end = mText.get();
    for (const auto& [identifier, entry] : entries) {
        ForEachText(identifier, entry, [&](StringView text) {
            end = coding::WriteSearchForm(text, end);
            *end++ = Separator;
        });
        mEnds.push_back(static_cast<size_t>(end - mText.get()));
    }
}

void SearchText::NoteChange(size_t place) {
    if (mChanged.empty() || mChanged.back() != place) mChanged.push_back(place);
}

std::vector<size_t> SearchText::Places(const Finder& term) const {
    const std::vector<size_t> held = PlacesInCopy(term.Folded());
    if (mChanged.empty()) return held;
    std::vector<size_t> changed = mChanged;
    std::ranges::sort(changed);
    const auto [end, last] = std::ranges::unique(changed);
    std::vector<size_t> places;
    std::set_union(held.begin(), held.end(), changed.begin(), end, std::back_inserter(places));
    return places;
}

std::vector<size_t> SearchText::PlacesInCopy(StringView folded) const {
    std::vector<size_t> places;
    if (mEnds.empty()) return places;
    coding::ByteScan scan({mText.get(), mEnds.back()}, folded);
    size_t place = 0;
    for (size_t at = scan.Find(0); at != StringView::npos; at = scan.Find(mEnds[place])) {
        while (mEnds[place] <= at)
            ++place;
        places.push_back(place);
    }
    return places;
}

}  // namespace sorbel
