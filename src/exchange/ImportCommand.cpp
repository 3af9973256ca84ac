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

struct Outcome {
    bool HasChanges;
    String Report, Remarks;
};

Outcome ReadFileRows(const String& path, Format format, const std::shared_ptr<LocalizedStringSet>& set,
                     bool strict) {
    try {
        TranslationImport import(set, strict);
        Input input = Input::Open(path);
        ReadRows(format, input, import);
        return {import.HasChanges(), import.Report(), import.Remarks()};
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
    std::shared_ptr<LocalizedStringSet> set = ReadLocale(locale);
    const Outcome outcome = ReadFileRows(in, format, set, arguments.Has("strict"));
    // Where no text changes, the file keeps every byte, also those that a save would write anew.
    if (outcome.HasChanges)
        SaveLocale(out, std::move(set));
    else if (arguments.Has("output"))
        CopyLocale(out, *set);
    Tell(outcome.Remarks);
    if (out == "-")
        Tell(outcome.Report);
    else
        Print(outcome.Report);
    return Done;
}

}  // namespace sorbel
