#include "exchange/Commands.h"
#include "exchange/ExchangeError.h"
#include "exchange/Format.h"
#include "exchange/LocaleFile.h"
#include "exchange/Po.h"
#include "exchange/Tables.h"
#include "exchange/Xliff.h"

namespace sorbel {

namespace {

/// The name of a file as text, for formats that mention it.
String NameAsText(const String& path) {
    const String name = FolderItem(path).Name();
    return IsXmlText(name) ? name : "locale";
}

Rows RowsFor(Format format, const String& locale, const LocalizedStringSet& set, bool lossy) {
    try {
        return {set, format == Format::Tsv ? Holds::DelimitedText : Holds::Characters, lossy};
    } catch (const IOException& failure) {
        throw ExchangeError(locale, failure.Message());
    }
}

void WriteRows(Format format, const Rows& rows, const String& name, const String& sourceLanguage,
               Output& output) {
    switch (format) {
        case Format::Po:
        case Format::Pot:
            return WritePo(rows, name, format == Format::Pot, output);
        case Format::Xliff:
            return WriteXliff(rows, name, sourceLanguage, output);
        case Format::Tsv:
            return WriteTsv(rows, output);
        case Format::Csv:
            return WriteCsv(rows, output);
    }
}

}  // namespace

int ExportCommand(const Arguments& arguments) {
    const String &locale = arguments.Operands()[0], &out = arguments.Operands()[1];
    const Format format = FormatOf(out, arguments, "to");
    const String sourceLanguage = LanguageTag(arguments.Value("source-language").value_or("en"));
    if (sourceLanguage.empty()) throw WrongUse("--source-language: not a language code");
    const std::shared_ptr<LocalizedStringSet> set = ReadLocale(locale);
    const Rows rows = RowsFor(format, locale, *set, arguments.Has("lossy"));
    try {
        WriteOutput(out, [&](Output& output) {
            WriteRows(format, rows, NameAsText(locale), sourceLanguage, output);
        });
    } catch (const IOException& failure) {
        throw ExchangeError(out, failure.Message());
    }
    if (rows.LeftOut() > 0)
        Tell("sorbel-exchange: " + locale + ": " + std::to_string(rows.LeftOut()) + " rows left out\n");
    return Done;
}

}  // namespace sorbel
