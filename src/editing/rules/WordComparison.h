#pragma once

#include <vector>

#include "platform/Text.h"

namespace sorbel {

/// The words of a text and the separators between them, which are words too: put together, they are the text.
/// Two separators in a row have an empty word between them, and so has one at the start. Line ends do not
/// separate.
[[nodiscard]] std::vector<StringView> SplitIntoWords(StringView text);

/// A stretch of a text that the other version has too, or not.
struct WordRun {
    StringView Text;
    bool Common;
};

struct WordComparison {
    std::vector<WordRun> Current;
    std::vector<WordRun> Older;
};

/// Marks what differs between two versions of a text. A greedy walk over both word lists from their heads,
/// not a longest common subsequence: a word that was passed is never matched again. Time is linear in the
/// words. The runs borrow from the two texts.
[[nodiscard]] WordComparison CompareWords(StringView current, StringView older);

}  // namespace sorbel
