#pragma once

#include <memory>

#include "exchange/Po.h"
#include "exchange/Tables.h"
#include "exchange/Xliff.h"

namespace sorbel {

using Document = std::shared_ptr<LocalizedStringSet>;

/// What a reader makes of a text.
struct Imported {
    String Report, Remarks;
};

template <typename Read>
Imported ImportText(const Document& document, Read read, StringView text, bool strict = false) {
    TranslationImport import(document, strict);
    Input input = Input::Of(text);
    read(input, import);
    return {import.Report(), import.Remarks()};
}

/// What a writer puts out.
template <typename Write>
String Written(Write write) {
    String text;
    Output output([&text](StringView piece) { text += piece; });
    write(output);
    output.Flush();
    return text;
}

inline String ToPo(const LocalizedStringSet& set, bool isTemplate = false) {
    return Written(
        [&](Output& output) { WritePo(Rows(set, Holds::Characters, false), "test", isTemplate, output); });
}
inline String ToXliff(const LocalizedStringSet& set) {
    return Written(
        [&](Output& output) { WriteXliff(Rows(set, Holds::Characters, false), "test", "en", output); });
}
inline String ToCsv(const LocalizedStringSet& set) {
    return Written([&](Output& output) { WriteCsv(Rows(set, Holds::Characters, false), output); });
}
inline String ToTsv(const LocalizedStringSet& set) {
    return Written([&](Output& output) { WriteTsv(Rows(set, Holds::DelimitedText, false), output); });
}

inline String Translation(const Document& document, StringView identifier, int64_t platform = PlatformAny) {
    const PlatformTable* const entry = document->Entries.Find(identifier);
    const EntryValue* const value = entry ? entry->Find(platform) : nullptr;
    return value ? String(value->Localized) : "(no such row)";
}

/// Rows that formats find hard.
inline Document Hard() {
    auto set = std::make_shared<LocalizedStringSet>();
    set->Language = "de_DE";
    set->AddEntry(PlatformWindows, "order", "Windows first", "W");
    set->AddEntry(7, "order", "Seven", "7");
    set->AddEntry(PlatformAny, "order", "Any", "A");
    set->AddEntry(-2, "order", "Minus", "-2");
    set->AddEntry(PlatformAny, "bar|back\\slash", "d", "t");
    set->AddEntry(PlatformMacOS, "bar|Windows", "d", "t");
    set->AddEntry(PlatformAny, "", "nameless", "namenlos");
    set->AddEntry(PlatformAny, "no default", "", "kein Vorgabetext");
    set->AddEntry(PlatformAny, "no translation", "text", "");
    set->AddEntry(PlatformAny, "lines", "\none\r\ntwo\rthree\n\n", "\neins\r\nzwei\rdrei\n\n");
    set->AddEntry(PlatformAny, "quotes, \"and\" <tags> & 'more'", "say \"a, b\"\t<b>&amp;</b> ]]> \\n",
                  " \"c\", d;\t<b>&lt;</b> \\\" ");
    set->AddEntry(PlatformAny, "ümlaut 日本 \U0001F600", "é", "\u00a0ß\u2028\ufeff");
    return set;
}

}  // namespace sorbel
