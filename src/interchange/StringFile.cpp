#include "interchange/StringFile.h"

#include "interchange/Escapes.h"
#include "interchange/ValueChoice.h"

namespace sorbel {

String ToStringFile(const LocalizedStringSet& set) {
    String lines;
    for (const auto& [identifier, entry] : set.Entries) {
        const StringView value = ExportedValue(entry, PlatformMacOS);
        if (value.empty()) continue;
        lines.append("\"").append(identifier).append("\" = \"");
        lines.append(EscapeCStyle(ReplaceLineEndings(value, "\n"))).append("\";\n");
    }
    return ChrB(0xFE) + ChrB(0xFF) + EncodeUtf16BE(lines);
}

}  // namespace sorbel
