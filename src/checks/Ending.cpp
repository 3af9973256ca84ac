#include "checks/Ending.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <array>
#include <bitset>

#include "checks/Mnemonics.h"

namespace sorbel::checks {

namespace {

enum Kind { Period, Colon, Semicolon, ExclamationMark, QuestionMark, Comma, Ellipsis, NoMark };

struct MarkKind {
    StringView Name;
    std::u32string_view Members;
};
/// In the order of `Kind`: ASCII, full-width, small and half-width forms; then danda and Arabic, Armenian,
/// Ethiopic and Khmer marks. Greek has a raised point for a semicolon, and a code point for its question mark
/// that few keyboards give.
constexpr std::array<MarkKind, NoMark> Kinds = {{
    {".", U".\u3002\uFF0E\uFE52\uFF61\u0964\u06D4\u0589\u1362\u17D4"},
    {":", U":\uFF1A\uFE55\u1365"},
    {";", U";\uFF1B\uFE54\u061B\u1364\u0387\u00B7"},
    {"!", U"!\uFF01\uFE57"},
    {"?", U"?\uFF1F\uFE56\u061F\u037E\u1367"},
    {",", U",\uFF0C\uFE50\u3001\uFE51\uFF64\u060C\u1363"},
    {"…", U"\u2026\u22EF"},
}};
constexpr int64_t DotsOfEllipsis = 3;

/// A bit for each kind. Neither the order of marks nor their number plays a part.
using Marks = std::bitset<NoMark>;

Kind KindOf(int32_t codePoint) {
    if (codePoint >= 'A' && codePoint <= 'z') return NoMark;  // most texts end with a letter
    const auto isMember = [codePoint](const MarkKind& kind) {
        return kind.Members.find(static_cast<char32_t>(codePoint)) != std::u32string_view::npos;
    };
    return static_cast<Kind>(std::ranges::find_if(Kinds, isMember) - Kinds.begin());
}

bool IsQuotationMark(int32_t codePoint) {
    const bool isLetter = codePoint >= 'A' && codePoint <= 'z';
    return codePoint >= 0 && !isLetter && u_hasBinaryProperty(codePoint, UCHAR_QUOTATION_MARK);
}

template <typename Test>
StringView WithoutLast(StringView text, Test test) {
    while (!text.empty() && test(LastCharacter(text).CodePoint))
        text.remove_suffix(LastCharacter(text).Bytes.size());
    return text;
}

/// Without what may stand behind the ending.
StringView UpToEnding(StringView text) {
    const StringView outer = WithoutMnemonicInBrackets(Trimmed(text));
    const StringView inner = Trimmed(WithoutLast(outer, IsQuotationMark));
    const StringView ahead = WithoutLast(inner, [](int32_t c) { return KindOf(c) != NoMark; });
    const bool isQuotedMark =
        inner.size() < outer.size() && (ahead.empty() || IsQuotationMark(LastCharacter(ahead).CodePoint));
    return isQuotedMark ? outer : inner;
}

bool EndsWithGreekLetter(StringView text) {
    const StringView word = WithoutLast(text, [](int32_t c) { return c < 0 || !u_isalpha(c); });
    if (word.empty()) return false;
    UErrorCode status = U_ZERO_ERROR;
    return uscript_getScript(LastCharacter(word).CodePoint, &status) == USCRIPT_GREEK;
}

Marks MarksOf(StringView text) {
    Marks marks;
    int64_t dots = 0;
    const auto endDots = [&] {
        if (dots > 0) marks.set(dots >= DotsOfEllipsis ? Ellipsis : Period);
        dots = 0;
    };
    for (StringView rest = UpToEnding(text); !rest.empty();) {
        const Character last = LastCharacter(rest);
        const Kind kind = KindOf(last.CodePoint);
        if (kind == NoMark) break;
        if (kind == Period) {
            ++dots;
        } else {
            endDots();
            marks.set(kind);
        }
        rest.remove_suffix(last.Bytes.size());
    }
    endDots();
    return marks;
}

bool AreSemicolonAndQuestion(Marks a, Marks b) {
    return (a ^ b) == Marks((1u << Semicolon) | (1u << QuestionMark)) && a.count() == b.count();
}

}  // namespace

String EndingOf(StringView text) {
    String ending;
    const Marks marks = MarksOf(text);
    for (size_t kind = 0; kind < Kinds.size(); ++kind)
        if (marks[kind]) ending += Kinds[kind].Name;
    return ending;
}

bool SameEnding(StringView a, StringView b) {
    const Marks ofA = MarksOf(a), ofB = MarksOf(b);
    if (ofA == ofB) return true;
    const StringView withSemicolon = ofA[Semicolon] ? a : b;
    return AreSemicolonAndQuestion(ofA, ofB) && EndsWithGreekLetter(withSemicolon);
}

}  // namespace sorbel::checks
