#include "exchange/RowKey.h"

#include <algorithm>
#include <charconv>

#include "stringset/PlatformTable.h"

namespace sorbel {

namespace {

constexpr StringView Special = "|\\";

/// Numbers stand only for platforms without a word, and in one spelling, so that a row has one key.
std::optional<int64_t> PlatformOfNumber(StringView digits) {
    int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    if (!isWhole || std::to_string(number) != digits || !PlatformText(number).empty()) return std::nullopt;
    return number;
}

/// The place of the bar that ends the identifier, or the key's size. `special` is the first bar or backslash.
size_t EndOfIdentifier(StringView key, size_t special) {
    size_t at = special;
    while (at < key.size() && key[at] != '|')
        at = std::min(key.find_first_of(Special, at + 2), key.size());
    return at;
}

/// False for a backslash in front of what needs none.
bool Unescape(StringView escaped, String& to) {
    to.clear();
    for (size_t at = 0; at < escaped.size(); ++at) {
        if (escaped[at] == '\\' && (++at == escaped.size() || Special.find(escaped[at]) == StringView::npos))
            return false;
        to += escaped[at];
    }
    return true;
}

}  // namespace

String PlatformWord(int64_t platform) {
    const StringView word = PlatformText(platform);
    return word.empty() ? std::to_string(platform) : String(word);
}

std::optional<int64_t> PlatformOf(StringView word) {
    for (const int64_t platform : {PlatformAny, PlatformMacOS, PlatformWindows, PlatformLinux})
        if (Equal(word, PlatformText(platform))) return platform;
    return PlatformOfNumber(word);
}

String RowKey(StringView identifier, int64_t platform) {
    String key;
    RowKey(identifier, platform, key);
    return key;
}

void RowKey(StringView identifier, int64_t platform, String& to) {
    to.clear();
    if (identifier.find_first_of(Special) == StringView::npos) {
        to = identifier;
    } else {
        for (const char c : identifier) {
            if (Special.find(c) != StringView::npos) to += '\\';
            to += c;
        }
    }
    if (platform != PlatformAny) to.append("|").append(PlatformWord(platform));
}

std::optional<KeyedRow> RowOfKey(StringView key, String& room) {
    const size_t special = key.find_first_of(Special);
    if (special == StringView::npos) return KeyedRow{key, PlatformAny};
    const size_t end = EndOfIdentifier(key, special);
    std::optional<int64_t> platform = PlatformAny;
    if (end < key.size()) {
        platform = PlatformOf(key.substr(end + 1));
        if (!platform || *platform == PlatformAny) return std::nullopt;
    }
    if (special == end) return KeyedRow{key.substr(0, end), *platform};
    if (!Unescape(key.substr(0, end), room)) return std::nullopt;
    return KeyedRow{room, *platform};
}

}  // namespace sorbel
