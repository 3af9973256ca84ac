#include "checks/Statistics.h"
#include "exchange/Commands.h"
#include "exchange/LocaleFile.h"
#include "exchange/Output.h"
#include "exchange/Report.h"

namespace sorbel {

namespace {

using checks::Statistics;

String TextLine(StringView file, StringView language, const Statistics& counted) {
    const auto number = [](int64_t value, StringView what) {
        return ", " + std::to_string(value) + String(what);
    };
    return OnOneLine(file) + ": " + (language.empty() ? "no language" : OnOneLine(language)) +
           number(counted.Strings, " strings") + number(counted.Rows, " rows") +
           number(counted.Translated, " translated (") + std::to_string(counted.Percent()) + " %)" +
           number(counted.Words, " words") + number(counted.WordsToDo, " words to do") + "\n";
}

String JsonObject(StringView file, StringView language, const Statistics& counted) {
    const auto member = [](StringView name, int64_t value) {
        return ", \"" + String(name) + "\": " + std::to_string(value);
    };
    return "{\"file\": " + JsonString(file) + ", \"language\": " + JsonString(language) +
           member("strings", counted.Strings) + member("rows", counted.Rows) +
           member("translated", counted.Translated) + member("percent", counted.Percent()) +
           member("words", counted.Words) + member("words_to_do", counted.WordsToDo) + "}";
}

}  // namespace

int StatsCommand(const Arguments& arguments) {
    const ReportFormat format = ReportFormatOf(arguments);
    std::vector<String> lines;
    for (const String& file : arguments.Operands()) {
        const std::shared_ptr<LocalizedStringSet> set = ReadLocale(file);
        checks::StatisticsCounter counter;
        ForEachRow(*set, [&counter](const checks::Row& row) { counter.Add(row); });
        const auto line = format == ReportFormat::Json ? JsonObject : TextLine;
        lines.push_back(line(file, set->Language, counter.Counted()));
    }
    Print(format == ReportFormat::Json ? JsonArray(lines) : Join(lines, ""));
    return Done;
}

}  // namespace sorbel
