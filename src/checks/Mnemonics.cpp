#include "checks/Mnemonics.h"

#include <unicode/uchar.h>

#include "platform/TextCoding.h"

namespace sorbel::checks {

namespace {

bool CanBeMarked(int32_t codePoint) {
    return codePoint >= 0 && !u_isUWhiteSpace(codePoint) &&
           !u_hasBinaryProperty(codePoint, UCHAR_QUOTATION_MARK) &&
           u_charType(codePoint) != U_END_PUNCTUATION;
}

}  // namespace

Mnemonics FindMnemonics(StringView text) {
    Mnemonics found;
    for (size_t at = text.find('&'); at != StringView::npos; at = text.find('&', at)) {
        if (++at == text.size()) break;
        const int32_t marked = coding::Decode(text.data() + at, text.size() - at).CodePoint;
        if (marked == '&') {
            ++at;
        } else if (CanBeMarked(marked)) {
            if (found.Count++ == 0) found.Letter = coding::FoldCodePoint(marked);
        }
    }
    return found;
}

StringView WithoutMnemonicInBrackets(StringView text) {
    for (const auto& [opening, closing] : {std::pair<StringView, StringView>{"(&", ")"}, {"（&", "）"}}) {
        if (!text.ends_with(closing)) continue;
        const size_t start = text.rfind(opening);
        if (start == StringView::npos) continue;
        const StringView marked = text.substr(start + opening.size());
        if (FirstCharacter(marked).Bytes.size() + closing.size() == marked.size())
            return text.substr(0, start);
    }
    return text;
}

}  // namespace sorbel::checks
