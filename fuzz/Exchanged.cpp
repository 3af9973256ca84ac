#include "Exchanged.h"

#include "Target.h"
#include "exchange/ExchangeError.h"
#include "interchange/DelimitedText.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel::fuzz {

namespace {

using Set = std::shared_ptr<LocalizedStringSet>;

String Export(const LocalizedStringSet& set, const ExchangeForm& form) {
    String text;
    Output output([&text](StringView piece) { text += piece; });
    form.Write(Rows(set, form.What, true), output);
    output.Flush();
    return text;
}

/// A document with the same rows, and `translation` wherever there is one that can come back.
Set With(StringView translation, const LocalizedStringSet& set, bool keepsEmpty) {
    auto other = std::make_shared<LocalizedStringSet>();
    for (const auto& [identifier, entry] : set.Entries)
        for (int64_t i = 0; i < entry.Count(); ++i) {
            const EntryValue& value = entry.ItemAt(i).Value;
            other->AddEntry(entry.ItemAt(i).Platform, identifier, value.Original,
                            keepsEmpty && value.Localized.Empty() ? StringView() : translation);
        }
    return other;
}

/// A mark at the head of a text is skipped, and the text form has no word for other platforms.
bool ComesBack(const Row& row, const ExchangeForm& form) {
    if (form.What == Holds::Characters) return true;
    return !row.Identifier.starts_with("\xEF\xBB\xBF") && !PlatformText(row.Platform).empty();
}

void CheckRoundTrip(const LocalizedStringSet& set, const ExchangeForm& form) {
    const String text = Export(set, form);
    const Set other = With("?", set, !form.BringsEmpty);
    TranslationImport import(other, true);
    Input input = Input::Of(text);
    form.Read(input, import);
    bool hasAll = true;
    Rows(set, form.What, true).ForEach([&](const Row& row) {
        const bool comesBack = ComesBack(row, form);
        hasAll = hasAll && comesBack;
        const EntryValue* const value = other->Entries.At(row.Identifier).Find(row.Platform);
        Require(!comesBack || value->Localized.View() == row.Value.Localized.View(),
                "a translation comes back as it was");
    });
    Require(!hasAll || import.Remarks().empty(), "every row is known, with the same default text");
    Require(Export(*With("", *other, false), form) == Export(*With("", set, false), form),
            "nothing but translations comes back");
}

Set Known() {
    auto set = std::make_shared<LocalizedStringSet>();
    set->AddEntry(PlatformAny, "a", "A", "x");
    set->AddEntry(PlatformLinux, "a", "A", "");
    set->AddEntry(7, "a|b\\c", "", "z");
    set->AddEntry(PlatformAny, "", "d\n", "t");
    return set;
}

void CheckText(StringView text, const ExchangeForm& form) {
    const Set set = Known();
    TranslationImport import(set, false);
    Input input = Input::Of(text);
    try {
        form.Read(input, import);
    } catch (const FormatError& error) {
        Require(!error.Message().empty() && error.Line() >= 0, "a refusal says why");
        return;
    }
    Require(ToDelimitedText(*With("", *set, false)) == ToDelimitedText(*With("", *Known(), false)),
            "rows and default texts stay");
    Require(import.HasChanges() == (ToDelimitedText(*set) != ToDelimitedText(*Known())), "changes are told");
    if (form.What == Holds::Characters)
        Require(Rows(*set, form.What, true).LeftOut() == 0, "what comes in can go out");
    CheckRoundTrip(*set, form);
}

}  // namespace

void CheckExchange(StringView input, const ExchangeForm& form) {
    if (!input.starts_with("nvlocale")) return CheckText(input, form);
    LocalizedStringSet set;
    auto bytes = std::make_shared<ByteBuffer>(input.size());
    input.copy(bytes->Data(), input.size());
    try {
        set.ReadBytes(bytes);
    } catch (const UnsupportedFormatException&) {  // a malformed date
        return;
    }
    CheckRoundTrip(set, form);
}

}  // namespace sorbel::fuzz
