#pragma once

#include <functional>

#include "checks/OtherRows.h"
#include "checks/Row.h"
#include "checks/Rules.h"

namespace sorbel::checks {

/// Checks the rows of one document in one pass.
class Checker {
  public:
    /// What a row is called in the message of another.
    using Naming = std::function<String(const Row& row)>;
    /// Hears of a finding: its row, its rule and what differs, which may hold bytes of the row's texts.
    using Report = std::function<void(const Row& row, Rule rule, const String& message)>;

    /// `longest` as in RowRules.h, for `Rule::Length`.
    Checker(const Rules& rules, double longest, Naming naming, Report report);

    /// Rows of one string come one after the other. What they point to has to outlive this.
    void Add(const Row& row);

  private:
    [[nodiscard]] std::optional<String> Find(Rule rule, const Row& row);

    Rules mRules;
    double mLongest;
    Naming mNaming;
    Report mReport;
    InconsistencyFinder mInconsistencies;
    DuplicateMnemonicFinder mDuplicates;
};

}  // namespace sorbel::checks
