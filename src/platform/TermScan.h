#pragma once

#include <optional>

#include "platform/TextCoding.h"

namespace sorbel::coding {

/// Looks for a folded term in texts as they are, without a folded copy of them: a place is worth a look where
/// the last bytes of two neighbouring characters of the term may be, in whatever letter case. Internal to
/// this folder.
class TermScan {
  public:
    /// `folded` is a term in search form, which must outlive this. Its characters are told by valid UTF-8, so
    /// one with stray bytes can't be looked for here.
    explicit TermScan(StringView folded);
    [[nodiscard]] bool CanRun() const { return mCanRun; }

    /// The first place at or behind `from` that is worth a look; `end` if there is none before.
    [[nodiscard]] const char* Next(const char* from, const char* end) const;
    /// So far before `end` there may be a place whose two characters `end` parts, which is passed over.
    static constexpr ptrdiff_t MostDistance = 4;

    /// Where in the text the term begins that such a place belongs to, nothing if it is not the term.
    /// `patience` falls by the characters that were the same.
    [[nodiscard]] std::optional<size_t> Match(StringView text, size_t place, int64_t& patience) const;
    /// How many characters to compare at most in a text: one that needs more is so repetitive that a search
    /// of its folded copy is quicker.
    static int64_t Patience(StringView text) { return 4 * LenB(text) + 64; }

  private:
    /// What some bytes have in common: the bits that are set in all of them and those set in any.
    struct Likeness {
        unsigned char All = 0xFF, Any = 0;
        void Add(Likeness other) {
            All &= other.All;
            Any |= other.Any;
        }
    };
    /// The characters that fold to one, by their last bytes.
    struct Spellings {
        Likeness SameSize, OtherSize;
        size_t Size;  // of the folded one
        [[nodiscard]] bool DifferInSize() const { return OtherSize.Any != 0; }
        [[nodiscard]] Likeness Each() const;
    };

    static Spellings SpellingsOf(int32_t folded);

    StringView mFolded;
    size_t mBehind = 0;  // place in the term behind the first of the two characters
    Likeness mFirst;     // what the byte at a place is like
    Likeness mSecond;    // and the one mDistance behind it; without a distance, what it may be like instead
    size_t mDistance = 0;
    bool mCanRun = true;
};

}  // namespace sorbel::coding
