#include "checks/Placeholders.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/TextCoding.h"

namespace sorbel::checks {

namespace {

uint64_t MarkHeads(uint64_t word) {
    return coding::MarkByte(word, '%') | coding::MarkByte(word, '<') | coding::MarkByte(word, '{');
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return coding::FoldAscii(c) >= 'a' && coding::FoldAscii(c) <= 'z';
}
bool IsOneOf(char c, StringView choice) {
    return choice.find(c) != StringView::npos;
}

/// Looks at the characters of a text one by one; beyond its end are zero bytes.
class Cursor {
  public:
    Cursor(StringView text, size_t at) : mText(text), mAt(at) {}

    [[nodiscard]] size_t At() const { return mAt; }
    [[nodiscard]] char Next() const { return mAt < mText.size() ? mText[mAt] : '\0'; }
    bool Take(char c) {
        if (Next() != c || mAt >= mText.size()) return false;
        ++mAt;
        return true;
    }
    bool TakeOneOf(StringView choice) { return IsOneOf(Next(), choice) && Take(Next()); }
    template <typename Test>
    bool TakeAll(Test test) {
        const size_t start = mAt;
        while (mAt < mText.size() && test(mText[mAt]))
            ++mAt;
        return mAt > start;
    }
    bool TakeDigits() { return TakeAll(IsDigit); }

  private:
    StringView mText;
    size_t mAt;
};

/// The size of the argument and the conversion, where flags, width and precision are through.
bool TakeConversion(Cursor& cursor) {
    const size_t start = cursor.At();
    cursor.TakeAll([](char c) { return IsOneOf(c, "hljztqL"); });
    const bool isSure = IsOneOf(cursor.Next(), "ds@");
    if (cursor.At() > start + 2 || !cursor.TakeOneOf("@dsiuoxXfegcpn")) return false;
    return isSure || !IsLetter(cursor.Next());
}

/// "%d" and all that may stand between. A minus sign needs a width, or "%-off" would be one.
bool TakeFormat(Cursor& cursor) {
    const bool isLeft = cursor.Take('-');
    cursor.TakeAll([](char c) { return IsOneOf(c, "+#0"); });
    const bool hasWidth = cursor.TakeDigits() || cursor.Take('*');
    if (isLeft && !hasWidth) return false;
    if (cursor.Take('.') && !cursor.TakeDigits()) cursor.Take('*');
    return TakeConversion(cursor);
}

/// Where the number at `start` is a position ("1$d") or a width ("5.1f"), the end of the whole.
std::optional<size_t> EndOfNumberedFormat(StringView text, size_t start) {
    Cursor cursor(text, start);
    cursor.TakeDigits();
    if (cursor.Take('$')) return TakeFormat(cursor) ? std::optional(cursor.At()) : std::nullopt;
    const bool isWidth = cursor.Next() == '.' || text[start] == '0';
    Cursor whole(text, start);
    return isWidth && TakeFormat(whole) ? std::optional(whole.At()) : std::nullopt;
}

/// The end of what begins with the "%" at `start`; `start` if it is nothing.
size_t EndOfPercent(StringView text, size_t start, bool isBehindDigit) {
    Cursor cursor(text, start + 1);
    if (cursor.TakeDigits()) {
        const std::optional<size_t> end = isBehindDigit ? std::nullopt : EndOfNumberedFormat(text, start + 1);
        return end.value_or(cursor.At());
    }
    if (cursor.Take('@')) return cursor.At();
    Cursor local(text, start + 1);
    if (local.Take('L') && local.TakeDigits()) return local.At();
    return !isBehindDigit && TakeFormat(cursor) ? cursor.At() : start;
}

size_t EndOfTag(StringView text, size_t start) {
    Cursor cursor(text, start + 1);
    cursor.Take('/');
    if (!cursor.TakeDigits()) return start;
    cursor.Take('/');
    return cursor.Take('>') ? cursor.At() : start;
}

size_t EndOfBraces(StringView text, size_t start) {
    Cursor cursor(text, start + 1);
    if (cursor.TakeDigits()) {
        if (IsOneOf(cursor.Next(), ",:")) cursor.TakeAll([](char c) { return !IsOneOf(c, "{}"); });
    } else if (IsLetter(cursor.Next()) || cursor.Next() == '_') {
        cursor.TakeAll([](char c) { return IsLetter(c) || IsDigit(c) || IsOneOf(c, "_."); });
    } else {
        return start;
    }
    return cursor.Take('}') ? cursor.At() : start;
}

/// The end of the placeholder at `start`; `start` if there is none.
size_t EndOfPlaceholder(StringView text, size_t start, size_t lastEnd) {
    if (text[start] == '{') return EndOfBraces(text, start);
    if (text[start] == '<') return EndOfTag(text, start);
    return EndOfPercent(text, start, start > lastEnd && IsDigit(text[start - 1]));
}

/// The form in which placeholders of two texts are compared: "%1$s" is "%s" where positions don't count.
String Compared(StringView placeholder, bool withPositions) {
    const size_t dollar = withPositions ? StringView::npos : placeholder.find('$');
    return dollar == StringView::npos ? String(placeholder) : "%" + String(placeholder.substr(dollar + 1));
}

bool HasPositions(const std::vector<StringView>& placeholders) {
    return std::ranges::any_of(placeholders,
                               [](StringView one) { return one.find('$') != StringView::npos; });
}

std::vector<String> Keys(const std::vector<StringView>& placeholders, bool withPositions) {
    std::vector<String> keys;
    for (const StringView one : placeholders)
        keys.push_back(Compared(one, withPositions));
    std::ranges::sort(keys);
    return keys;
}

/// The numbers in front of percent signs, each with a "%" ahead as if it were a placeholder.
std::vector<String> Percentages(StringView text) {
    std::vector<String> percentages;
    for (size_t at = text.find('%'); at != StringView::npos; at = text.find('%', at + 1)) {
        StringView ahead = text.substr(0, at);
        if (!ahead.empty() && !IsDigit(ahead.back()))
            ahead.remove_suffix(LastCharacter(ahead).Bytes.size());  // a blank of whatever kind
        const StringView digits = ahead.substr(ahead.find_last_not_of("0123456789") + 1);
        if (!digits.empty()) percentages.push_back("%" + String(digits));
    }
    std::ranges::sort(percentages);
    return percentages;
}

/// What comes more often among the first, each once.
std::vector<String> Surplus(const std::vector<String>& some, const std::vector<String>& others,
                            StringView otherText) {
    std::vector<String> surplus, rest;
    std::ranges::set_difference(some, others, std::back_inserter(surplus));
    if (surplus.empty()) return surplus;
    surplus.erase(std::unique(surplus.begin(), surplus.end()), surplus.end());
    std::ranges::set_difference(surplus, Percentages(otherText), std::back_inserter(rest));
    return rest;
}

}  // namespace

std::vector<StringView> FindPlaceholders(StringView text) {
    std::vector<StringView> found;
    size_t lastEnd = 0;
    for (size_t at = 0; (at = coding::FindMarked(text, at, MarkHeads)) < text.size();) {
        const size_t end = EndOfPlaceholder(text, at, lastEnd);
        if (end > at) {
            found.push_back(text.substr(at, end - at));
            lastEnd = at = end;
        } else {
            at += text.substr(at).starts_with("%%") ? 2 : 1;
        }
    }
    return found;
}

PlaceholderDifference ComparePlaceholders(StringView defaultText, StringView translation) {
    const std::vector<StringView> wanted = FindPlaceholders(defaultText),
                                  given = FindPlaceholders(translation);
    if (wanted == given) return {};
    const bool withPositions = HasPositions(wanted) && HasPositions(given);
    const std::vector<String> wantedKeys = Keys(wanted, withPositions),
                              givenKeys = Keys(given, withPositions);
    return {Surplus(wantedKeys, givenKeys, translation), Surplus(givenKeys, wantedKeys, defaultText)};
}

}  // namespace sorbel::checks
