#include "checks/Edges.h"

#include <array>
#include <cstdio>

#include "platform/TextCoding.h"

namespace sorbel::checks {

namespace {

constexpr int32_t NoBreakSpace = 0xA0, NarrowNoBreakSpace = 0x202F;

bool TakesNoBreakSpace(int32_t codePoint) {
    constexpr int32_t closingGuillemet = 0xBB;
    return codePoint == closingGuillemet ||
           (codePoint > 0 && codePoint < 0x80 &&
            StringView(":;!?%").find(static_cast<char>(codePoint)) != StringView::npos);
}

/// The white space in front of a mark, less the no-break space that belongs to it.
StringView WithoutSpaceOfMark(StringView start, StringView rest) {
    if (start.empty() || rest.empty() || !TakesNoBreakSpace(FirstCharacter(rest).CodePoint)) return start;
    const Character last = LastCharacter(start);
    if (last.CodePoint == NoBreakSpace || last.CodePoint == NarrowNoBreakSpace)
        start.remove_suffix(last.Bytes.size());
    return start;
}

String CodePointName(int32_t codePoint) {
    std::array<char, 16> name{};
    std::snprintf(name.data(), name.size(), "U+%04X", static_cast<unsigned>(codePoint));
    return name.data();
}

String NameOfSpace(int32_t codePoint) {
    switch (codePoint) {
        case ' ':
            return "blank";
        case '\t':
            return "tab";
        case '\n':
            return "line break";
        case NoBreakSpace:
            return "no-break space";
        default:
            return CodePointName(codePoint);
    }
}

String Counted(int64_t count, const String& name) {
    return count == 1 ? "a " + name : std::to_string(count) + " " + name + "s";
}

}  // namespace

Edges FindEdges(StringView text) {
    const StringView inner = Trimmed(text);
    if (inner.empty()) return {text, {}};
    const size_t start = static_cast<size_t>(inner.data() - text.data());
    return {WithoutSpaceOfMark(text.substr(0, start), inner), text.substr(start + inner.size())};
}

bool SameWhiteSpace(StringView a, StringView b) {
    return a == b || ReplaceLineEndings(a, "\n") == ReplaceLineEndings(b, "\n");
}

String DescribeWhiteSpace(StringView blanks) {
    constexpr int64_t mostKinds = 4;  // enough for a person
    const String unified = ReplaceLineEndings(blanks, "\n");
    String text;
    StringView rest = unified;
    for (int64_t kind = 0; !rest.empty(); ++kind) {
        if (kind == mostKinds) return text + " and more";
        const Character first = FirstCharacter(rest);
        int64_t count = 0;
        for (; rest.starts_with(first.Bytes); ++count)
            rest.remove_prefix(first.Bytes.size());
        text += (text.empty() ? "" : ", ") + Counted(count, NameOfSpace(first.CodePoint));
    }
    return text.empty() ? "none" : text;
}

}  // namespace sorbel::checks
