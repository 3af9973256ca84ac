#include <unicode/uchar.h>

#include <algorithm>

#include "platform/TextCoding.h"

namespace sorbel {

using namespace coding;

namespace {

StringView Tail(StringView text, int64_t skipped) {
    return text.substr(Measure(text, skipped).Bytes);
}

/// A text's last character; the text must not be empty.
Decoded DecodeLast(StringView text) {
    for (uint32_t size = 1; size <= 4 && size <= text.size(); ++size) {
        const Decoded character = Decode(text.data() + text.size() - size, size);
        if (character.CodePoint >= 0 && character.Size == size) return character;
    }
    return {-1, 1};
}

bool IsSpace(Decoded character) {
    return character.CodePoint >= 0 && u_isUWhiteSpace(character.CodePoint);
}

}  // namespace

int64_t Len(StringView text) {
    return Measure(text, INT64_MAX).Characters;
}

String Left(StringView text, int64_t count) {
    return String(text.substr(0, Measure(text, count).Bytes));
}

String Right(StringView text, int64_t count) {
    return String(Tail(text, Len(text) - std::max<int64_t>(count, 0)));
}

String Mid(StringView text, int64_t start) {
    return Mid(text, start, INT64_MAX);
}

String Mid(StringView text, int64_t start, int64_t count) {
    return Left(Tail(text, std::max<int64_t>(start, 1) - 1), count);
}

Character FirstCharacter(StringView text) {
    const Decoded character = Decode(text.data(), text.size());
    return {text.substr(0, character.Size), character.CodePoint};
}

Character LastCharacter(StringView text) {
    const Decoded character = DecodeLast(text);
    return {text.substr(text.size() - character.Size), character.CodePoint};
}

StringView Trimmed(StringView text) {
    while (!text.empty()) {
        const Decoded first = Decode(text.data(), text.size());
        if (!IsSpace(first)) break;
        text.remove_prefix(first.Size);
    }
    while (!text.empty()) {
        const Decoded last = DecodeLast(text);
        if (!IsSpace(last)) break;
        text.remove_suffix(last.Size);
    }
    return text;
}

String Trim(StringView text) {
    return String(Trimmed(text));
}

}  // namespace sorbel
