#include "scripting/compiler/FieldPlaces.h"

#include "platform/TextCoding.h"
#include "scripting/compiler/Strings.h"

namespace sorbel::script {

StringView FieldPlaces::Field(Text* text, StringView delimiter, int64_t index) {
    const StringView view = ViewOf(text);
    if (index < 1) return {};
    if (delimiter.empty()) return index == 1 ? view : StringView();
    Places once;
    Places& places = IsWorth(view, delimiter) ? Of(*text, delimiter) : once;
    if (!places.GoTo(view, delimiter, index)) return {};
    const size_t end = coding::FindBytes(view, delimiter, places.LastStart);
    return view.substr(places.LastStart, end - places.LastStart);
}

int64_t FieldPlaces::Count(Text* text, StringView delimiter) {
    const StringView view = ViewOf(text);
    if (delimiter.empty() || !IsWorth(view, delimiter)) return CountFields(view, delimiter);
    Places& places = Of(*text, delimiter);
    if (places.Total == 0) (void)places.GoTo(view, delimiter, INT64_MAX);
    return places.Total;
}

bool FieldPlaces::Places::GoTo(StringView text, StringView delimiter, int64_t index) {
    if (Total > 0 && index > Total) return false;
    const auto mark = static_cast<size_t>((index - 1) / Step);
    if (!Starts.empty()) {
        // From the nearest field before this one that is known.
        const size_t known = std::min(mark, Starts.size() - 1);
        const int64_t field = static_cast<int64_t>(known) * Step + 1;
        if (index < Last || field > Last) {
            Last = field;
            LastStart = Starts[known];
        }
    }
    while (Last < index) {
        const size_t end = coding::FindBytes(text, delimiter, LastStart);
        if (end == StringView::npos) {
            Total = Last;
            return false;
        }
        LastStart = end + delimiter.size();
        ++Last;
        if ((Last - 1) / Step == static_cast<int64_t>(Starts.size()) && (Last - 1) % Step == 0)
            Starts.push_back(static_cast<uint32_t>(LastStart));
    }
    return true;
}

FieldPlaces::Places& FieldPlaces::Of(Text& text, StringView delimiter) {
    for (Places& places : mKnown)
        if (places.In == &text && places.Delimiter == delimiter) return places;
    Places& places = mKnown[mOldest];
    mOldest = (mOldest + 1) % mKnown.size();
    places.In = &text;
    places.Delimiter = delimiter;
    places.Starts.assign(1, 0);
    places.Last = 1;
    places.LastStart = 0;
    places.Total = 0;
    text.Watched = true;
    return places;
}

void FieldPlaces::Forget(const Text* text) {
    for (Places& places : mKnown)
        if (places.In == text) places.In = nullptr;
}

}  // namespace sorbel::script
