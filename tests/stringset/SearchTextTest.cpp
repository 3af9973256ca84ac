#include "stringset/SearchText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "stringset/LocalizedStringSet.h"

namespace sorbel {

namespace {

bool Holds(const SharedText& identifier, const PlatformTable& entry, const Finder& term) {
    bool held = term.IsIn(identifier);
    for (int64_t index = 0; index < entry.Count(); ++index) {
        const EntryValue& value = entry.ItemAt(index).Value;
        held |= term.IsIn(value.Original) || term.IsIn(value.Localized);
    }
    return held;
}

class RandomSet {
  public:
    LocalizedStringSet Set;

    void Change(int count) {
        for (int i = 0; i < count; ++i)
            Set.AddEntry(Below(3), "id" + Word() + std::to_string(Below(400)), Word() + " " + Word(), Word());
    }
    String Word() {
        static const std::vector<StringView> words = {
            "",     "File", "ÄRGER",    "ärger",     "\u212Aelvin", "stra\u00DFe",
            "\xFF", "\xC3", "OPEN all", "\U0001F600"};
        return String(words[static_cast<size_t>(Below(10))]);
    }
    int Below(int limit) { return static_cast<int>(mRandom() % static_cast<unsigned>(limit)); }

  private:
    std::mt19937 mRandom{11};
};

}  // namespace

TEST(SearchText, MissesNoStringWhateverHasChanged) {
    RandomSet random;
    size_t told = 0, held = 0;
    for (int round = 0; round < 200; ++round) {
        random.Change(round % 20 == 0 ? 300 : random.Below(4));
        for (const StringView term : {"file", "Ärger", "k", "\xFF", "\xC3", "pen A", "id3", "nowhere"}) {
            const Finder finder(term);
            const auto places = random.Set.PlacesThatMayHold(finder);
            EXPECT_TRUE(std::ranges::is_sorted(places));
            told += places.size();
            size_t place = 0;
            for (const auto& [identifier, entry] : random.Set.Entries) {
                const bool isHeld = Holds(identifier, entry, finder);
                held += isHeld;
                ASSERT_TRUE(!isHeld || std::ranges::binary_search(places, place))
                    << identifier.View() << term;
                ++place;
            }
        }
    }
    EXPECT_LT(told, held + held / 2);  // or it would be of no use
}

}  // namespace sorbel
