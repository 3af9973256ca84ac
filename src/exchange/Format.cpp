#include "exchange/Format.h"

#include <optional>

#include "exchange/ExchangeError.h"

namespace sorbel {

namespace {

std::optional<Format> FormatNamed(StringView name) {
    struct Named {
        StringView Name;
        Format Is;
    };
    constexpr Named all[] = {{"po", Format::Po},       {"pot", Format::Pot}, {"xlf", Format::Xliff},
                             {"xliff", Format::Xliff}, {"tsv", Format::Tsv}, {"csv", Format::Csv}};
    for (const auto& [known, format] : all)
        if (Equal(known, name)) return format;
    return std::nullopt;
}

StringView EndingOf(StringView path) {
    const StringView name = path.substr(path.rfind('/') + 1);
    const size_t dot = name.rfind('.');
    return dot == StringView::npos ? StringView() : name.substr(dot + 1);
}

}  // namespace

Format FormatOf(StringView path, const Arguments& arguments, StringView option) {
    if (const std::optional<String> told = arguments.Value(option)) {
        if (const auto format = FormatNamed(*told)) return *format;
        throw WrongUse(*told + ": not a format; there are po, pot, xlf, xliff, tsv and csv");
    }
    if (path == "-") throw WrongUse("-: the format has to be told with --" + String(option));
    if (const auto format = FormatNamed(EndingOf(path))) return *format;
    throw WrongUse(String(path) + ": unknown ending; there are .po, .pot, .xlf, .xliff, .tsv and .csv");
}

}  // namespace sorbel
