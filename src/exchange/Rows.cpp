#include "exchange/Rows.h"

#include <algorithm>

#include "exchange/RowKey.h"
#include "interchange/Escapes.h"
#include "platform/TextCoding.h"

namespace sorbel {

using namespace coding;

namespace {

/// Bytes that need a closer look: control characters, and what is not ASCII.
uint64_t MarkSuspects(uint64_t word) {
    return MarkBelow(word, ' ') | (word & (EachByte * 0x80));
}

bool IsXmlCharacter(int32_t codePoint) {
    if (codePoint < ' ') return codePoint == '\t' || codePoint == '\n' || codePoint == '\r';
    return codePoint != 0xFFFE && codePoint != 0xFFFF;  // UTF-8 that is valid has no surrogates
}

/// On one line, and with U+FFFD where it is not text, since it is for a terminal.
String Shown(StringView identifier) {
    String shown;
    for (StringView rest = identifier; !rest.empty();) {
        const Character character = FirstCharacter(rest);
        shown += IsXmlText(character.Bytes) ? String(character.Bytes) : Chr(-1);
        rest.remove_prefix(character.Bytes.size());
    }
    return EscapeCStyle(shown);
}

StringView Reason(Holds holds) {
    return holds == Holds::Characters ? "has bytes that are not UTF-8 or characters that XML cannot hold"
                                      : "has a tab or a line end in its identifier";
}

}  // namespace

bool IsXmlText(StringView text) {
    for (size_t at = FindMarked(text, 0, MarkSuspects); at < text.size();
         at = FindMarked(text, at, MarkSuspects)) {
        const Decoded character = Decode(text.data() + at, text.size() - at);
        if (!IsXmlCharacter(character.CodePoint)) return false;
        at += character.Size;
    }
    return true;
}

Rows::Rows(const LocalizedStringSet& set, Holds holds, bool lossy) : mSet(set), mHolds(holds) {
    int64_t leftOut = 0;
    ForEach([&](const Row& row) {
        if (CanHold(row)) return;
        if (!lossy)
            throw IOException("\"" + Shown(RowKey(row.Identifier, row.Platform)) + "\" " +
                              String(Reason(mHolds)));
        ++leftOut;
    });
    mLeftOut = leftOut;
}

bool Rows::CanHold(const Row& row) const {
    if (mHolds == Holds::AnyBytes) return true;
    if (mHolds == Holds::DelimitedText) return row.Identifier.find_first_of("\t\r\n") == StringView::npos;
    return IsXmlText(row.Identifier) && IsXmlText(row.Value.Original) && IsXmlText(row.Value.Localized);
}

void Rows::CollectItems(const PlatformTable& entry, std::vector<const PlatformTable::Item*>& items) const {
    items.clear();
    for (int64_t index = 0; index < entry.Count(); ++index)
        items.push_back(&entry.ItemAt(index));
    const auto order = [](const PlatformTable::Item* item) {
        return std::pair(item->Platform != PlatformAny, item->Platform);
    };
    if (items.size() > 1 && mHolds != Holds::DelimitedText) std::ranges::sort(items, {}, order);
}

}  // namespace sorbel
