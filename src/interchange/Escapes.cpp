#include "interchange/Escapes.h"

#include "platform/TextCoding.h"

namespace sorbel {

namespace {

/// The letter behind the backslash; 0 for a character without an escape.
char EscapeFor(char c) {
    switch (c) {
        case '\r':
            return 'r';
        case '\n':
            return 'n';
        case '\t':
            return 't';
        case '"':
        case '\\':
            return c;
        default:
            return 0;
    }
}

/// The characters that may need one: to look for all the low control characters takes less than for three.
uint64_t MarkSuspects(uint64_t word) {
    return coding::MarkBelow(word, '\r' + 1) | coding::MarkByte(word, '"') | coding::MarkByte(word, '\\');
}

/// Letters count in either case, as in every comparison of texts.
char Decoded(char c) {
    switch (c) {
        case 'n':
        case 'N':
            return '\n';
        case 'r':
        case 'R':
            return '\r';
        case 't':
        case 'T':
            return '\t';
        default:
            return c;
    }
}

}  // namespace

String EscapeCStyle(StringView s) {
    String result;
    result.reserve(s.size());
    EscapeCStyle(s, result);
    return result;
}

void EscapeCStyle(StringView s, String& to) {
    for (size_t start = 0;;) {
        const size_t end = coding::FindMarked(s, start, MarkSuspects);
        to.append(s, start, end - start);
        if (end == s.size()) return;
        const char escape = EscapeFor(s[end]);
        if (escape) to += '\\';
        to += escape ? escape : s[end];
        start = end + 1;
    }
}

String DecodeCStyleEscapes(StringView s) {
    String result;
    result.reserve(s.size());
    size_t start = 0;
    for (size_t at = s.find('\\'); at != StringView::npos; at = s.find('\\', start)) {
        result += s.substr(start, at - start);
        if (at + 1 == s.size()) return result;
        result += Decoded(s[at + 1]);
        start = at + 2;
    }
    return result += s.substr(start);
}

}  // namespace sorbel
