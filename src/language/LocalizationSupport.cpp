#include "language/LocalizationSupport.h"

#include <algorithm>
#include <array>

#include "language/LanguageTable.h"

namespace sorbel::LocalizationSupport {

namespace {

// Cuts the head up to a delimiter off `rest`, and the delimiter with it.
StringView TakeField(StringView& rest, char delimiter) {
    const size_t end = std::min(rest.find(delimiter), rest.size());
    const StringView field = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return field;
}

void Store(LanguageTable::Names& names, StringView code, StringView name) {
    names.FindOrAdd(code, [code] { return SharedText::Borrow(code); }) = SharedText::Borrow(name);
}

LanguageTable ParseTable(StringView text) {
    LanguageTable table;
    table.mISO639_2Language.Reserve(static_cast<size_t>(std::count(text.begin(), text.end(), '\r')) + 1);
    while (!text.empty()) {
        StringView row = TakeField(text, '\r');
        std::array<StringView, 4> fields;
        for (StringView& field : fields)
            field = TakeField(row, '\t');
        Store(table.mISO639_2Language, fields[0], fields[3]);
        Store(table.mISO639_1Language, fields[2],
              fields[3]);  // an empty code is a key too; the last row keeps it
    }
    return table;
}

}  // namespace

const LanguageTable& InitializeTable() {
    static const LanguageTable table = ParseTable(LanguageText());
    return table;
}

String ISOCodeToLangauge(StringView code) {
    const LanguageTable& table = InitializeTable();
    const SharedText* name = table.mISO639_1Language.Find(code);
    if (!name) name = table.mISO639_2Language.Find(code);
    return name ? String(*name) : String();
}

}  // namespace sorbel::LocalizationSupport
