#include "checks/Blanks.h"

#include "platform/TextCoding.h"

namespace sorbel::checks {

namespace {

constexpr StringView Blanks[] = {" ", "\u00A0", "\u202F"};

/// What blanks begin with.
uint64_t MarkHeads(uint64_t word) {
    return coding::MarkByte(word, ' ') | coding::MarkByte(word, '\xC2') | coding::MarkByte(word, '\xE2');
}

uint64_t MarkLineEnds(uint64_t word) {
    return coding::MarkByte(word, '\r') | coding::MarkByte(word, '\n');
}

/// The size of the blank at the head of a text, 0 if there is none.
size_t BlankAt(StringView text) {
    for (const StringView blank : Blanks)
        if (text.starts_with(blank)) return blank.size();
    return 0;
}

}  // namespace

int64_t FindDoubledBlank(StringView text) {
    for (size_t at = 0; (at = coding::FindMarked(text, at, MarkHeads)) < text.size(); ++at) {
        const size_t size = BlankAt(text.substr(at));
        if (size > 0 && BlankAt(text.substr(at + size)) > 0) return Len(text.substr(0, at)) + 1;
    }
    return 0;
}

int64_t CountLineBreaks(StringView text) {
    int64_t count = 0;
    for (size_t at = 0; (at = coding::FindMarked(text, at, MarkLineEnds)) < text.size(); ++count)
        at += text.substr(at).starts_with("\r\n") ? 2 : 1;
    return count;
}

}  // namespace sorbel::checks
