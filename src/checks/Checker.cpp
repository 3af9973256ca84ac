#include "checks/Checker.h"

#include "checks/RowRules.h"

namespace sorbel::checks {

namespace {

/// Enough of a text to know it by.
String Shortened(StringView text) {
    constexpr int64_t most = 40;
    const String head = Left(text, most);
    return head.size() < text.size() ? head + "…" : head;
}

}  // namespace

Checker::Checker(const Rules& rules, double longest, Naming naming, Report report)
    : mRules(rules), mLongest(longest), mNaming(std::move(naming)), mReport(std::move(report)) {}

void Checker::Add(const Row& row) {
    for (size_t number = 0; number < RuleCount; ++number) {
        const Rule rule = static_cast<Rule>(number);
        if (!mRules.Has(rule)) continue;
        if (const std::optional<String> message = Find(rule, row)) mReport(row, rule, *message);
    }
}

std::optional<String> Checker::Find(Rule rule, const Row& row) {
    if (rule == Rule::Inconsistent) {
        const Row* first = mInconsistencies.Add(row);
        if (!first) return {};
        return "the default text is translated as \"" + Shortened(first->Translation) + "\" at " +
               mNaming(*first);
    }
    if (rule == Rule::DuplicateMnemonic) {
        const std::optional<Row> other = mDuplicates.Add(row);
        if (!other) return {};
        return "the mnemonic is also that of " + mNaming(*other);
    }
    return Check(rule, row, mLongest);
}

}  // namespace sorbel::checks
