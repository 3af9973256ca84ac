#pragma once

#include <array>
#include <bitset>
#include <optional>

#include "platform/Text.h"

namespace sorbel::checks {

/// What a translation can be checked for.
enum class Rule : uint8_t {
    Untranslated,       ///< there is a default text and no translation
    Mnemonic,           ///< another number of mnemonics
    DuplicateMnemonic,  ///< a mnemonic that another row has, where the default texts have different ones
    Placeholder,        ///< other placeholders
    Edges,              ///< other white space at the start or the end
    Ending,             ///< other punctuation at the end
    DoubledBlank,       ///< two blanks in a row, where the default text has none
    Newline,            ///< another number of line breaks
    Inconsistent,       ///< the same default text is translated in another way elsewhere
    Same,               ///< the default text itself
    Length              ///< longer than so many times the default text
};
inline constexpr size_t RuleCount = 11;

/// The names under which people choose the rules, in the order of `Rule`.
inline constexpr std::array<StringView, RuleCount> RuleNames = {
    "untranslated",  "mnemonic", "duplicate-mnemonic", "placeholder", "edges", "ending",
    "doubled-blank", "newline",  "inconsistent",       "same",        "length"};

[[nodiscard]] constexpr StringView NameOf(Rule rule) {
    return RuleNames[static_cast<size_t>(rule)];
}
/// Nothing for a name that no rule has.
[[nodiscard]] std::optional<Rule> RuleNamed(StringView name);

/// A set of rules.
class Rules {
  public:
    /// All but those that call for a decision: duplicate mnemonics and untouched texts are often right, and a
    /// length needs a limit.
    static Rules Usual();

    [[nodiscard]] bool Has(Rule rule) const { return mChosen[static_cast<size_t>(rule)]; }
    void Set(Rule rule, bool chosen = true) { mChosen[static_cast<size_t>(rule)] = chosen; }

  private:
    std::bitset<RuleCount> mChosen;
};

}  // namespace sorbel::checks
