// Texts searched for a term, against the plain way: both folded into numbers, and each place tried.
//   TERM, line end, texts that lie one after the other, each with a line end
#include <unicode/uchar.h>

#include <algorithm>
#include <vector>

#include "CodePoints.h"
#include "Target.h"
#include "platform/Finder.h"

namespace sorbel::fuzz {

namespace {

using Characters = std::vector<int32_t>;

/// Folded code points; a stray byte is a character beyond all others.
Characters Folded(StringView text) {
    Characters characters;
    const auto size = static_cast<int32_t>(text.size());
    for (int32_t at = 0; at < size;) {
        const auto start = static_cast<size_t>(at);
        const int32_t c = NextCodePoint(text, at);
        characters.push_back(c < 0 ? 0x110000 + static_cast<unsigned char>(text[start])
                                   : u_foldCase(c, U_FOLD_CASE_DEFAULT));
    }
    return characters;
}

/// From 1; 0 if it is not there.
int64_t PlainInStr(size_t start, const Characters& text, const Characters& term) {
    const size_t from = std::max<size_t>(start, 1) - 1;
    if (from > text.size()) return 0;
    const auto begin = text.begin() + static_cast<ptrdiff_t>(from);
    const auto found = std::search(begin, text.end(), term.begin(), term.end());
    return found == text.end() && !term.empty() ? 0 : found - text.begin() + 1;
}

void CheckText(StringView text, StringView term, const Characters& foldedTerm, const Finder& finder) {
    const Characters folded = Folded(text);
    const int64_t place = PlainInStr(0, folded, foldedTerm);
    Require(finder.IsIn(text) == (place > 0), "a finder finds what is there");
    for (const size_t start : {size_t{0}, size_t{1}, size_t{2}, folded.size() / 2, folded.size() + 1})
        Require(InStr(static_cast<int64_t>(start), text, term) == PlainInStr(start, folded, foldedTerm),
                "a search tells the place");
    const bool equal = folded == foldedTerm;
    Require(Equal(text, term) == equal, "texts are equal if they fold to the same");
    Require(!equal || FoldedHash(text) == FoldedHash(term), "equal texts have one hash");
    Require(Len(text) == static_cast<int64_t>(folded.size()), "a text is as long as its characters");
    Require(Folded(Fold(text)) == folded, "a folded text folds to itself");
}

std::vector<StringView> Lines(StringView block) {
    std::vector<StringView> lines;
    for (size_t start = 0; start <= block.size();) {
        const size_t end = std::min(block.find('\n', start), block.size());
        lines.push_back(block.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

}  // namespace

void CheckInput(StringView input) {
    const size_t end = std::min(input.find('\n'), input.size());
    const StringView term = input.substr(0, end);
    const String own(input.substr(std::min(end + 1, input.size())));  // texts that end with their memory
    const std::vector<StringView> texts = Lines(own);
    const Characters folded = Folded(term);

    const Finder sweep(term, {own});  // through all texts at once
    for (const StringView text : texts)
        CheckText(text, term, folded, sweep);
    const Finder alone(term);
    const Finder disorder(term, {StringView(own).substr(0, own.size() / 2), StringView(own)});
    for (size_t i = texts.size(); i-- > 0;) {
        const String copy(texts[i]);
        CheckText(copy, term, folded, alone);
        CheckText(texts[i], term, folded, disorder);
    }
    CheckText(own, term, folded, sweep);
}

}  // namespace sorbel::fuzz
