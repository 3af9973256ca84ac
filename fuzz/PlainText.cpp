#include "PlainText.h"

namespace sorbel::fuzz {

namespace {

constexpr StringView Words[] = {"Any", "Mac OS", "Windows", "Linux"};

std::optional<int64_t> PlatformOf(StringView word) {
    for (size_t code = 0; code < std::size(Words); ++code)
        if (Equal(word, Words[code])) return static_cast<int64_t>(code);
    return std::nullopt;
}

/// Commas alone count as tabs; a comma is the delimiter only where a tab stands behind it.
std::optional<char> Delimiter(StringView line) {
    const size_t tab = line.find('\t'), comma = line.find(',');
    if (tab == StringView::npos && comma == StringView::npos) return std::nullopt;
    return tab != StringView::npos && comma < tab ? ',' : '\t';
}

char Meaning(char c) {
    if (c == 'n' || c == 'N') return '\n';
    if (c == 'r' || c == 'R') return '\r';
    return c == 't' || c == 'T' ? '\t' : c;
}

}  // namespace

std::vector<String> PlainLines(StringView text) {
    std::vector<String> lines;
    bool inLine = false;
    for (size_t at = 0; at < text.size(); ++at) {
        if (!inLine) lines.emplace_back();
        inLine = text[at] != '\n' && text[at] != '\r';
        if (inLine) lines.back() += text[at];
        if (text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n') ++at;
    }
    return lines;
}

std::vector<String> PlainFields(StringView line, char delimiter) {
    std::vector<String> fields(1);
    for (const char c : line)
        if (c == delimiter)
            fields.emplace_back();
        else
            fields.back() += c;
    return fields;
}

String PlainUnescaped(StringView text) {
    String plain;
    bool escaped = false;
    for (const char c : text) {
        if (!escaped && c == '\\') {
            escaped = true;
            continue;
        }
        plain += escaped ? Meaning(c) : c;
        escaped = false;
    }
    return plain;
}

bool AddTextLocale(StringView text, PlainDocument& document) {
    for (const String& line : PlainLines(text)) {
        const std::vector<String> fields = PlainFields(line, '\t');
        if (fields.size() < 4) return false;
        document.Store(fields[0], {PlatformOf(fields[1]).value_or(PlatformAny), fields[2], fields[3]});
    }
    return true;
}

std::optional<std::vector<PlainChange>> PlainImport(const PlainDocument& document, StringView text) {
    const std::vector<String> lines = PlainLines(text);
    const std::optional<char> delimiter = lines.empty() ? std::nullopt : Delimiter(lines.front());
    if (!delimiter) return std::nullopt;
    std::vector<PlainChange> changes;
    for (const String& line : lines) {
        const std::vector<String> fields = PlainFields(line, *delimiter);
        if (fields.size() < 4 || !document.Find(fields[0])) continue;
        if (const auto platform = PlatformOf(fields[1]))
            changes.emplace_back(document, fields[0], *platform, PlainUnescaped(fields[3]));
    }
    return changes;
}

}  // namespace sorbel::fuzz
