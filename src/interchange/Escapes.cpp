#include "interchange/Escapes.h"

namespace sorbel {

namespace {

constexpr StringView Escaped = "\"\\\r\n\t";

String EscapeFor(char c) {
    switch (c) {
        case '\r':
            return "\\r";
        case '\n':
            return "\\n";
        case '\t':
            return "\\t";
        default:
            return {'\\', c};
    }
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
    size_t start = 0;
    for (size_t at = s.find_first_of(Escaped); at != StringView::npos; at = s.find_first_of(Escaped, start)) {
        result += s.substr(start, at - start);
        result += EscapeFor(s[at]);
        start = at + 1;
    }
    return result += s.substr(start);
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
