#include "checks/Rules.h"

#include <algorithm>

namespace sorbel::checks {

std::optional<Rule> RuleNamed(StringView name) {
    const auto found = std::ranges::find(RuleNames, name);
    if (found == RuleNames.end()) return std::nullopt;
    return static_cast<Rule>(found - RuleNames.begin());
}

Rules Rules::Usual() {
    Rules rules;
    rules.mChosen.set();
    for (const Rule rule : {Rule::DuplicateMnemonic, Rule::Same, Rule::Length})
        rules.Set(rule, false);
    return rules;
}

}  // namespace sorbel::checks
