#include <unistd.h>

#include "exchange/Commands.h"
#include "exchange/ExchangeError.h"
#include "exchange/Format.h"
#include "exchange/LocaleFile.h"
#include "exchange/Po.h"
#include "exchange/Tables.h"
#include "exchange/Xliff.h"

namespace sorbel {

namespace {

void ReadRows(Format format, Input& input, TranslationImport& import) {
    switch (format) {
        case Format::Po:
        case Format::Pot:
            return ReadPo(input, import);
        case Format::Xliff:
            return ReadXliff(input, import);
        case Format::Tsv:
            return ReadTsv(input, import);
        case Format::Csv:
            return ReadCsv(input, import);
    }
}

void ReadFileRows(const String& path, Format format, TranslationImport& import) {
    try {
        Input input = Input::Open(path);
        ReadRows(format, input, import);
    } catch (const FormatError& error) {
        throw ExchangeError(path, error.Message(), error.Line());
    } catch (const IOException& failure) {
        throw ExchangeError(path, failure.Message());
    }
}

}  // namespace

int ImportCommand(const Arguments& arguments) {
    const String &locale = arguments.Operands()[0], &in = arguments.Operands()[1];
    const String out = arguments.Value("output").value_or(locale);
    const Format format = FormatOf(in, arguments, "from");
    if (format == Format::Pot) throw WrongUse(in + ": a template has no translations to import");
    const std::shared_ptr<LocalizedStringSet> set = ReadLocale(locale);
    TranslationImport import(set, arguments.Has("strict"));
    ReadFileRows(in, format, import);
    // Where no text changes, the file keeps every byte, also those that a save would write anew.
    if (import.HasChanges())
        SaveLocale(out, set->ToBytes());
    else if (arguments.Has("output"))
        SaveLocale(out, set->FileBytes().front());
    WriteAll(STDERR_FILENO, import.Remarks());
    WriteAll(out == "-" ? STDERR_FILENO : STDOUT_FILENO, import.Report());
    return Done;
}

}  // namespace sorbel
