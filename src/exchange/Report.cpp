#include "exchange/Report.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "exchange/ExchangeError.h"
#include "exchange/Rows.h"

namespace sorbel {

namespace {

bool IsControl(int32_t codePoint) {
    const int8_t kind = u_charType(codePoint);
    return kind == U_CONTROL_CHAR || kind == U_LINE_SEPARATOR || kind == U_PARAGRAPH_SEPARATOR;
}

void AppendShown(Character character, String& to) {
    switch (character.CodePoint) {
        case '\n':
            to += "\\n";
            break;
        case '\r':
            to += "\\r";
            break;
        case '\t':
            to += "\\t";
            break;
        default:
            if (character.CodePoint < 0 || IsControl(character.CodePoint))
                to += Chr(-1);
            else
                to += character.Bytes;
    }
}

}  // namespace

ReportFormat ReportFormatOf(const Arguments& arguments) {
    const String name = arguments.Value("format").value_or("text");
    if (name == "text") return ReportFormat::Text;
    if (name == "json") return ReportFormat::Json;
    throw WrongUse("--format: " + name + " is neither text nor json");
}

String OnOneLine(StringView text) {
    const auto isPlain = [](char c) {
        return c >= ' ' && c <= '~';
    };
    const auto plainEnd = std::ranges::find_if_not(text, isPlain);  // mostly the end
    String line(text.begin(), plainEnd);
    for (StringView rest(plainEnd, text.end()); !rest.empty();) {
        const Character character = FirstCharacter(rest);
        AppendShown(character, line);
        rest.remove_prefix(character.Bytes.size());
    }
    return line;
}

String JsonString(StringView text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

String JsonArray(const std::vector<String>& elements) {
    return elements.empty() ? "[]\n" : "[\n" + Join(elements, ",\n") + "\n]\n";
}

void ForEachRow(const LocalizedStringSet& set, const std::function<void(const checks::Row& row)>& visit) {
    Rows(set, Holds::AnyBytes, false).ForEach([&visit](const Row& row) {
        visit({row.Identifier, row.Platform, row.Value.Original, row.Value.Localized});
    });
}

}  // namespace sorbel
