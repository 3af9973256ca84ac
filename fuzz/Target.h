#pragma once

#include "platform/Text.h"

// What a fuzz target is made of. Linked with libFuzzer its input is searched for by coverage; linked with
// Drive.cpp the same target goes through the files that it is given.
namespace sorbel::fuzz {

/// What the target has to say about an input, defined by each target: it returns if all is well.
void CheckInput(StringView input);

/// Ends the program with a message if a property does not hold, which makes the input a finding.
void Require(bool holds, const char* property);

/// Time stands still until a target installs a clock of its own; that target calls this when it has done.
void StopTime();

/// What stands before the first separator, and what behind it; all of it twice if there is none, so that an
/// input without a separator is also a pair.
struct Pair {
    StringView First, Second;
};
[[nodiscard]] Pair SplitInput(StringView input, StringView separator);

}  // namespace sorbel::fuzz
