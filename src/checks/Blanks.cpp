#include "checks/Blanks.h"

#include "platform/TextCoding.h"

namespace sorbel::checks {

namespace {

constexpr StringView Blanks[] = {" ", "\u00A0", "\u202F"};

/// The size of the blank at the head of a text, 0 if there is none.
size_t BlankAt(StringView text) {
    for (const StringView blank : Blanks)
        if (text.starts_with(blank)) return blank.size();
    return 0;
}

}  // namespace

int64_t FindDoubledBlank(StringView text) {
    constexpr StringView heads = " \xC2\xE2";  // the first bytes of Blanks
    for (size_t at = text.find_first_of(heads); at != StringView::npos;
         at = text.find_first_of(heads, at + 1)) {
        const size_t size = BlankAt(text.substr(at));
        if (size > 0 && BlankAt(text.substr(at + size)) > 0) return Len(text.substr(0, at)) + 1;
    }
    return 0;
}

int64_t CountLineBreaks(StringView text) {
    int64_t count = 0;
    for (size_t at = text.find_first_of("\r\n"); at != StringView::npos;
         at = text.find_first_of("\r\n", at)) {
        ++count;
        at += text.substr(at).starts_with("\r\n") ? 2 : 1;
    }
    return count;
}

}  // namespace sorbel::checks
