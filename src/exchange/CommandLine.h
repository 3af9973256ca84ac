#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "platform/Text.h"

namespace sorbel {

/// An option of a command: "--NAME", or "--NAME VALUE".
struct Option {
    const char* Name;
    bool HasValue = false;
    char Letter = 0;  ///< "-LETTER" is the same; 0: there is none
};

/// What follows the name of a command.
class Arguments {
  public:
    /// `words` are the command's name and what follows it. Options may stand anywhere before "--". Fails
    /// with WrongUse for an option that is not among `options` or lacks its value.
    Arguments(const std::vector<String>& words, const std::vector<Option>& options);

    /// What is no option, in order.
    [[nodiscard]] const std::vector<String>& Operands() const { return mOperands; }
    [[nodiscard]] bool Has(StringView option) const { return Value(option).has_value(); }
    /// The last value of an option; empty for one that has none; nothing if it was not given.
    [[nodiscard]] std::optional<String> Value(StringView option) const;
    /// All its values, in order.
    [[nodiscard]] std::vector<String> Values(StringView option) const;

  private:
    std::vector<String> mOperands;
    std::vector<std::pair<String, String>> mOptions;
};

}  // namespace sorbel
