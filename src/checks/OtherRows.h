#pragma once

#include <map>
#include <optional>
#include <unordered_set>
#include <vector>

#include "checks/Row.h"

namespace sorbel::checks {

/// Finds rows that translate a default text in another way than the first row with it. Texts count byte by
/// byte, and each platform by itself: it has rows of its own because it words things in its own way. Keeps
/// what the rows point to, some 90 bytes for each default text.
class InconsistencyFinder {
  public:
    /// The first row with the default text of this translated row, if that is translated in another way.
    [[nodiscard]] const Row* Add(const Row& row);

  private:
    struct Hash {
        size_t operator()(const Row& row) const;
    };
    struct SameDefault {
        bool operator()(const Row& a, const Row& b) const {
            return a.Platform == b.Platform && a.Default == b.Default;
        }
    };
    std::unordered_set<Row, Hash, SameDefault> mFirst;
};

/// Finds translations that share a mnemonic with an earlier one where the default texts have different
/// letters: where they don't, their makers knew it would do, say in different menus. Rows of platforms that
/// never meet, and those of one string, don't count. Rows of a string come one after the other.
class DuplicateMnemonicFinder {
  public:
    /// An earlier row with the mnemonic of this translated row, if there is one.
    [[nodiscard]] std::optional<Row> Add(const Row& row);

  private:
    struct Marked {
        Row Text;
        int32_t InDefault, InTranslation;  // letters
    };
    /// The first row with a letter in its translation, and the first of the others whose default text has
    /// another letter than that one's: for whatever letter, one of the two differs.
    struct Pair {
        std::optional<Marked> First, Other;
    };
    /// A letter, and a platform or nothing for all of them together.
    using Place = std::pair<int32_t, std::optional<int64_t>>;

    void EndString();
    void Keep(const Place& place, const Marked& marked);
    [[nodiscard]] std::optional<Row> FindAt(const Place& place, const Marked& marked) const;

    std::map<Place, Pair> mPairs;
    std::vector<Marked> mOfString;  // of the string whose rows are coming
};

}  // namespace sorbel::checks
