#include <algorithm>

#include "platform/TermScan.h"

namespace sorbel {

using namespace coding;

namespace {

/// Characters in search form: all bytes but those that go on with one.
int64_t CountCharacters(StringView form) {
    return std::ranges::count_if(form, [](char c) { return (c & 0xC0) != 0x80; });
}

/// What stands before the term, in characters; -1 without the term.
int64_t CharactersBefore(StringView folded, StringView text) {
    if (IsAscii(folded)) {  // for another term a scan takes longer to prepare than most texts to fold
        const TermScan scan(folded);
        const char* const end = text.data() + text.size();
        int64_t patience = TermScan::Patience(text);
        for (const char* at = text.data(); patience > 0; ++at) {
            at = scan.Next(at, end);
            if (at == end) return -1;
            const auto place = scan.Match(text, static_cast<size_t>(at - text.data()), patience);
            if (place) return Len(text.substr(0, *place));
        }
    }
    const String form = SearchForm(text);
    const size_t place = FindBytes(form, folded);
    return place == String::npos ? -1 : CountCharacters(StringView(form).substr(0, place));
}

}  // namespace

int64_t InStr(int64_t start, StringView text, StringView term) {
    const int64_t skipped = std::max<int64_t>(start, 1) - 1;
    const Span span = Measure(text, skipped);
    if (span.Characters < skipped) return 0;
    if (term.empty()) return skipped + 1;
    const int64_t before = CharactersBefore(SearchForm(term), text.substr(span.Bytes));
    return before < 0 ? 0 : skipped + before + 1;
}

}  // namespace sorbel
