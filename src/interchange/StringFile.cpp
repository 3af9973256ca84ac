#include "interchange/StringFile.h"

#include "interchange/Escapes.h"
#include "interchange/ValueChoice.h"

namespace sorbel {

namespace {

/// Room for the file, unless it has more than a few escapes.
size_t SizeOf(const LocalizedStringSet& set) {
    constexpr size_t PerLine = 9 + 2;
    size_t size = 1;
    for (const auto& [identifier, entry] : set.Entries)
        size += PerLine + identifier.View().size() + ExportedValue(entry, PlatformMacOS).size();
    return 2 * size;
}

void AppendLine(StringView identifier, StringView value, String& to) {
    to.append("\"").append(identifier).append("\" = \"");
    if (value.find('\r') == StringView::npos)
        EscapeCStyle(value, to);
    else
        EscapeCStyle(ReplaceLineEndings(value, "\n"), to);
    to.append("\";\n");
}

}  // namespace

String ToStringFile(const LocalizedStringSet& set) {
    String file, line;
    file.reserve(SizeOf(set));
    file.append("\xFE\xFF");
    for (const auto& [identifier, entry] : set.Entries) {
        const StringView value = ExportedValue(entry, PlatformMacOS);
        if (value.empty()) continue;
        line.clear();
        AppendLine(identifier, value, line);
        EncodeUtf16BE(line, file);
    }
    return file;
}

}  // namespace sorbel
