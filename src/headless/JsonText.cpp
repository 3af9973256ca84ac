#include "headless/JsonText.h"

namespace sorbel::headless {

namespace {

constexpr StringView HexDigits = "0123456789abcdef";
constexpr int DeepestNesting = 64;  // far above any request; keeps the recursion here shallow
constexpr size_t EscapeLength = 6;  // of \uXXXX

int HexValue(char c) {
    const size_t digit = HexDigits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c);
    return digit == StringView::npos ? -1 : static_cast<int>(digit);
}

/// The code unit of an escape \uXXXX at the head of `text`, or -1 if there is none.
int EscapedUnit(StringView text) {
    if (text.size() < EscapeLength || text[0] != '\\' || text[1] != 'u') return -1;
    int unit = 0;
    for (const char c : text.substr(2, 4)) {
        if (HexValue(c) < 0) return -1;
        unit = unit * 16 + HexValue(c);
    }
    return unit;
}

bool IsHighSurrogate(int unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(int unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
bool IsByte(int unit) {
    return unit >= 0xDC80 && unit <= 0xDCFF;
}

// The parser knows no lone surrogates. Before it sees them they become a mark and two hex digits. The mark is
// the character 0, which JSON has in its escaped form only, so it cannot come in from elsewhere: an escape of
// the character itself is written in the same way.
constexpr char Mark = '\0';

String Marked(int unit) {
    const size_t byte = static_cast<size_t>(unit) & 0xFF;
    return String("\\u0000") + HexDigits[byte / 16] + HexDigits[byte % 16];
}

String WithMarks(StringView line) {
    String marked;
    marked.reserve(line.size());
    for (size_t at = 0; at < line.size();) {
        const int unit = EscapedUnit(line.substr(at));
        size_t length = line[at] == '\\' ? 2 : 1;
        if (unit >= 0) length = EscapeLength;
        if (IsHighSurrogate(unit) && IsLowSurrogate(EscapedUnit(line.substr(at + EscapeLength))))
            length = 2 * EscapeLength;
        if (unit == 0 || IsByte(unit))
            marked += Marked(unit);
        else
            marked += line.substr(at, length);
        at += length;
    }
    return marked;
}

String WithoutMarks(StringView text) {
    String plain;
    plain.reserve(text.size());
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] != Mark) {
            plain += text[at];
            continue;
        }
        plain += static_cast<char>(HexValue(text[at + 1]) * 16 + HexValue(text[at + 2]));
        at += 2;
    }
    return plain;
}

Json WithoutMarks(const Json& value) {
    if (value.is_string()) return WithoutMarks(StringView(value.get_ref<const String&>()));
    if (!value.is_structured()) return value;
    Json plain = value.is_array() ? Json::array() : Json::object();
    for (const auto& [key, element] : value.items()) {
        if (value.is_array())
            plain.push_back(WithoutMarks(element));
        else
            plain[WithoutMarks(StringView(key))] = WithoutMarks(element);
    }
    return plain;
}

void AppendByteEscape(StringView prefix, char byte, String& out) {
    const auto value = static_cast<unsigned char>(byte);
    out += prefix;
    out += HexDigits[value / 16];
    out += HexDigits[value % 16];
}

void AppendAscii(char c, String& out) {
    if (c == '"' || c == '\\') {
        out += '\\';
        out += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
        AppendByteEscape("\\u00", c, out);
    } else {
        out += c;
    }
}

void AppendText(StringView text, String& out) {
    out += '"';
    while (!text.empty()) {
        if (static_cast<unsigned char>(text[0]) < 0x80) {
            AppendAscii(text[0], out);
            text.remove_prefix(1);
            continue;
        }
        const Character character = FirstCharacter(text);
        if (character.CodePoint < 0)
            AppendByteEscape("\\udc", text[0], out);
        else
            out += character.Bytes;
        text.remove_prefix(character.Bytes.size());
    }
    out += '"';
}

void AppendValue(const Json& value, String& out);

void AppendStructure(const Json& value, String& out) {
    const bool array = value.is_array();
    out += array ? '[' : '{';
    bool first = true;
    for (auto item = value.begin(); item != value.end(); ++item) {
        if (!first) out += ',';
        first = false;
        if (!array) {
            AppendText(item.key(), out);
            out += ':';
        }
        AppendValue(*item, out);
    }
    out += array ? ']' : '}';
}

void AppendValue(const Json& value, String& out) {
    if (value.is_string())
        AppendText(value.get_ref<const String&>(), out);
    else if (value.is_structured())
        AppendStructure(value, out);
    else
        out += value.dump();
}

}  // namespace

Json ParseJson(StringView line) {
    const auto limit = [](int depth, Json::parse_event_t, Json&) {
        if (depth > DeepestNesting) throw RequestError("the request is nested too deep");
        return true;
    };
    try {
        return WithoutMarks(Json::parse(WithMarks(line), limit));
    } catch (const Json::exception&) {
        throw RequestError("the request is not valid JSON");
    }
}

String ToJson(const Json& value) {
    String out;
    AppendValue(value, out);
    return out;
}

}  // namespace sorbel::headless
