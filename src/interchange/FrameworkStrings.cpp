#include "interchange/FrameworkStrings.h"

#include "platform/FileContents.h"
#include "platform/SpecialFolder.h"

namespace sorbel {

namespace {

/// Codes with a region carry an underscore, their files a hyphen.
struct Table {
    StringView Key;
    StringView File;
    bool Loaded = false;
    String PermaText{};
};

Table tables[] = {
    {"ar", "ar.strings"},       {"ca", "ca.strings"},       {"cs", "cs.strings"}, {"da", "da.strings"},
    {"de", "de.strings"},       {"el", "el.strings"},       {"en", "en.strings"}, {"es", "es.strings"},
    {"fi", "fi.strings"},       {"fr", "fr.strings"},       {"he", "he.strings"}, {"hr", "hr.strings"},
    {"hu", "hu.strings"},       {"it", "it.strings"},       {"ja", "ja.strings"}, {"ko", "ko.strings"},
    {"nl", "nl.strings"},       {"no", "no.strings"},       {"pl", "pl.strings"}, {"pt_BR", "pt-BR.strings"},
    {"pt_PT", "pt-PT.strings"}, {"ro", "ro.strings"},       {"ru", "ru.strings"}, {"sk", "sk.strings"},
    {"sv", "sv.strings"},       {"th", "th.strings"},       {"tr", "tr.strings"}, {"uk", "uk.strings"},
    {"zh_CN", "zh-CN.strings"}, {"zh_TW", "zh-TW.strings"},
};

const String& Load(Table& table) {
    if (table.Loaded) return table.PermaText;
    table.Loaded = true;  // first, so that a failed attempt is not repeated
    const std::shared_ptr<FolderItem> folder = SpecialFolder::Resources();
    const std::shared_ptr<FolderItem> f = folder ? folder->Child(table.File) : nullptr;
    if (f && f->Exists()) table.PermaText = ReadContents(*f)->View();
    return table.PermaText;
}

}  // namespace

String LocalizedMacFrameworkStrings(StringView language) {
    for (Table& table : tables)
        if (Equal(language, table.Key)) return Load(table);
    return {};
}

}  // namespace sorbel
