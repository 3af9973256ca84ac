#include "checks/RowRules.h"

#include <algorithm>
#include <vector>

#include "checks/Blanks.h"
#include "checks/Edges.h"
#include "checks/Ending.h"
#include "checks/Mnemonics.h"
#include "checks/Placeholders.h"

namespace sorbel::checks {

namespace {

using Message = std::optional<String>;

String Both(const String& ofDefault, const String& ofTranslation) {
    return "the default text has " + ofDefault + ", the translation has " + ofTranslation;
}

/// "none", "1 mnemonic", "2 mnemonics".
String Counted(int64_t count, StringView what) {
    if (count == 0) return "no " + String(what);
    return std::to_string(count) + " " + String(what) + (count == 1 ? "" : "s");
}

Message CompareCounts(int64_t wanted, int64_t given, StringView what) {
    if (wanted == given) return {};
    return Both(Counted(wanted, what), Counted(given, what));
}

Message CheckMnemonic(const Row& row) {
    return CompareCounts(FindMnemonics(row.Default).Count, FindMnemonics(row.Translation).Count, "mnemonic");
}

Message CheckNewline(const Row& row) {
    return CompareCounts(CountLineBreaks(row.Default), CountLineBreaks(row.Translation), "line break");
}

String Listed(const std::vector<String>& names) {
    constexpr size_t most = 8;  // enough for a person
    const std::vector<String> first(names.begin(), names.begin() + std::min(names.size(), most));
    return Join(first, ", ") + (names.size() > most ? " and more" : "");
}

Message CheckPlaceholder(const Row& row) {
    const PlaceholderDifference difference = ComparePlaceholders(row.Default, row.Translation);
    const bool isMissing = !difference.Missing.empty(), isAdded = !difference.Added.empty();
    if (!isMissing && !isAdded) return {};
    return "the translation " + (isMissing ? "lacks " + Listed(difference.Missing) : String()) +
           (isMissing && isAdded ? " and " : "") +
           (isAdded ? "has " + Listed(difference.Added) + " too often" : String());
}

Message CheckEdges(const Row& row) {
    const Edges wanted = FindEdges(row.Default), given = FindEdges(row.Translation);
    String message;
    const auto compare = [&message](StringView place, StringView a, StringView b) {
        if (SameWhiteSpace(a, b)) return;
        message += (message.empty() ? "" : "; ") + String(place) +
                   Both(DescribeWhiteSpace(a), DescribeWhiteSpace(b));
    };
    compare("at the start ", wanted.Start, given.Start);
    compare("at the end ", wanted.End, given.End);
    return message.empty() ? Message() : message;
}

String Quoted(const String& ending) {
    return ending.empty() ? "no punctuation" : "\"" + ending + "\"";
}

Message CheckEnding(const Row& row) {
    if (SameEnding(row.Default, row.Translation)) return {};
    return "at the end " + Both(Quoted(EndingOf(row.Default)), Quoted(EndingOf(row.Translation)));
}

Message CheckDoubledBlank(const Row& row) {
    const int64_t place = FindDoubledBlank(row.Translation);
    if (place == 0 || FindDoubledBlank(row.Default) > 0) return {};
    return "two blanks in a row at character " + std::to_string(place) + " of the translation";
}

Message CheckLength(const Row& row, double longest) {
    const int64_t wanted = Len(row.Default), given = Len(row.Translation);
    if (wanted == 0 || static_cast<double>(given) <= longest * static_cast<double>(wanted)) return {};
    return Both(Counted(wanted, "character"), std::to_string(given));
}

}  // namespace

std::optional<String> Check(Rule rule, const Row& row, double longest) {
    if (rule == Rule::Untranslated)
        return row.Translation.empty() && !row.Default.empty() ? Message("there is no translation")
                                                               : Message();
    if (row.Translation.empty()) return {};
    switch (rule) {
        case Rule::Mnemonic:
            return CheckMnemonic(row);
        case Rule::Placeholder:
            return CheckPlaceholder(row);
        case Rule::Edges:
            return CheckEdges(row);
        case Rule::Ending:
            return CheckEnding(row);
        case Rule::DoubledBlank:
            return CheckDoubledBlank(row);
        case Rule::Newline:
            return CheckNewline(row);
        case Rule::Same:
            return row.Translation == row.Default ? Message("the translation is the default text")
                                                  : Message();
        case Rule::Length:
            return CheckLength(row, longest);
        case Rule::Untranslated:
        case Rule::DuplicateMnemonic:
        case Rule::Inconsistent:
            return {};
    }
    return {};
}

}  // namespace sorbel::checks
