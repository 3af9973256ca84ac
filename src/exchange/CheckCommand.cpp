#include <charconv>
#include <cmath>

#include "checks/Checker.h"
#include "exchange/Commands.h"
#include "exchange/ExchangeError.h"
#include "exchange/LocaleFile.h"
#include "exchange/Output.h"
#include "exchange/Report.h"
#include "exchange/RowKey.h"

namespace sorbel {

namespace {

using checks::Rule;

Rule RuleOf(StringView option, const String& name) {
    if (const std::optional<Rule> rule = checks::RuleNamed(name)) return *rule;
    throw WrongUse(String(option) + ": there is no rule " + name);
}

/// The factor of the rule on lengths, 0 if there is none.
double LongestOf(const Arguments& arguments) {
    const std::optional<String> text = arguments.Value("longest");
    if (!text) return 0;
    double factor = 0;
    const char* const end = text->data() + text->size();
    const auto [behind, error] = std::from_chars(text->data(), end, factor);
    if (error != std::errc() || behind != end || !std::isfinite(factor) || factor <= 0)
        throw WrongUse("--longest: " + *text + " is not a number above 0");
    return factor;
}

/// The rules that are named, or else the usual ones; a limit brings its rule along.
checks::Rules RulesOf(const Arguments& arguments, double longest) {
    const std::vector<String> named = arguments.Values("rule");
    checks::Rules rules = named.empty() ? checks::Rules::Usual() : checks::Rules();
    for (const String& name : named)
        rules.Set(RuleOf("--rule", name));
    if (rules.Has(Rule::Length) && longest == 0) throw WrongUse("--rule length: needs --longest FACTOR");
    if (longest > 0) rules.Set(Rule::Length);
    for (const String& name : arguments.Values("no-rule"))
        rules.Set(RuleOf("--no-rule", name), false);
    return rules;
}

String KeyOf(const checks::Row& row) {
    return RowKey(row.Identifier, row.Platform);
}

String TextFinding(StringView file, const checks::Row& row, Rule rule, StringView message) {
    return OnOneLine(file) + ":" + OnOneLine(KeyOf(row)) + ": " + String(NameOf(rule)) + ": " +
           OnOneLine(message) + "\n";
}

String JsonFinding(StringView file, const checks::Row& row, Rule rule, StringView message) {
    return "{\"file\": " + JsonString(file) + ", \"key\": " + JsonString(KeyOf(row)) +
           ", \"rule\": " + JsonString(NameOf(rule)) + ", \"message\": " + JsonString(message) + "}";
}

}  // namespace

int CheckCommand(const Arguments& arguments) {
    const ReportFormat format = ReportFormatOf(arguments);
    const double longest = LongestOf(arguments);
    const checks::Rules rules = RulesOf(arguments, longest);
    // Kept until all files are read: a reader of half an array could not tell that there was an error.
    std::vector<String> findings;
    for (const String& file : arguments.Operands()) {
        const std::shared_ptr<LocalizedStringSet> set = ReadLocale(file);
        const auto report = [&](const checks::Row& row, Rule rule, const String& message) {
            const auto finding = format == ReportFormat::Json ? JsonFinding : TextFinding;
            findings.push_back(finding(file, row, rule, message));
        };
        checks::Checker checker(rules, longest, KeyOf, report);
        ForEachRow(*set, [&checker](const checks::Row& row) { checker.Add(row); });
    }
    Print(format == ReportFormat::Json ? JsonArray(findings) : Join(findings, ""));
    return findings.empty() ? Done : Findings;
}

}  // namespace sorbel
