#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "platform/Finder.h"
#include "platform/Text.h"

namespace sorbel {
namespace {

const String Kelvin = "\u212A";
const String LongS = "\u017F";

/// The slow way to compare: folded characters, a stray byte marked as such.
std::vector<String> FoldedCharacters(StringView text) {
    std::vector<String> characters;
    while (!text.empty()) {
        const Character first = FirstCharacter(text);
        characters.push_back(first.CodePoint < 0 ? "stray" + String(first.Bytes) : Fold(first.Bytes));
        text.remove_prefix(first.Bytes.size());
    }
    return characters;
}

/// Where the term's characters are in the text, from 1.
int64_t SlowInStr(int64_t start, StringView text, StringView term) {
    const auto characters = FoldedCharacters(text);
    const auto sought = FoldedCharacters(term);
    if (start - 1 > std::ssize(characters)) return 0;
    const auto found =
        std::search(characters.begin() + start - 1, characters.end(), sought.begin(), sought.end());
    return found == characters.end() && !sought.empty() ? 0 : found - characters.begin() + 1;
}

/// Texts from a few characters that are easily confused, so that equal ones and matches are frequent.
String RandomText(std::mt19937& random, size_t most) {
    static const std::vector<String> pieces = {"a",
                                               "A",
                                               "k",
                                               "K",
                                               Kelvin,
                                               "s",
                                               "S",
                                               LongS,
                                               "z",
                                               ".",
                                               "@",
                                               "[",
                                               "aaaaaaaaaa",
                                               "\u00e4",
                                               "\u00c4",
                                               "\u03c3",
                                               "\u03a3",
                                               "\u03c2",
                                               "\u20ac",
                                               "\u1e9e",
                                               "\u00df",
                                               "\u023a",
                                               "\u2c65",
                                               "\U00010400",
                                               "\U00010428",
                                               "\x82",
                                               "\xac",
                                               "\xe2",
                                               "\xe2\x82",
                                               "\xc0",
                                               "\xff",
                                               "\xf0\x9f\x98",
                                               "\xed\xa0\x80",
                                               String(1, '\0')};
    const size_t kinds = 2 + random() % (pieces.size() - 1);
    const size_t first = random() % pieces.size();
    String text;
    for (size_t count = random() % (most + 1); count > 0; --count)
        text += pieces[(first + random() % kinds) % pieces.size()];
    return text;
}

TEST(TextComparison, CaseIsIgnoredCharacterByCharacter) {
    EXPECT_TRUE(Equal("ControlBackgroundColor", "controlBACKGROUNDcolor"));
    EXPECT_TRUE(Equal("\u00c4RGER \u03a3\u03a3 \U00010400", "\u00e4rger \u03c3\u03c2 \U00010428"));
    EXPECT_TRUE(Equal("tasks", "TA" + LongS + Kelvin + "S"));
    EXPECT_FALSE(Equal("[\\]^_@", "{|}~\x7f`"));
    EXPECT_FALSE(Equal("stra\u00dfe", "strasse"));
    EXPECT_FALSE(Equal("\u00e4", "a\u0308"));
    EXPECT_FALSE(Equal("same beginning", "same beginnin"));
    EXPECT_FALSE(Equal("\xe4", "\u00e4"));
    EXPECT_FALSE(Equal("\xe4", "\xc4"));
    EXPECT_EQ(Fold("\xc4\u00c4Z\xe2\x82"), "\xc4\u00e4z\xe2\x82");
    EXPECT_LT(StrComp("B", "a", 0), 0);
    EXPECT_GT(StrComp("\u00e4", "z", 0), 0);
    EXPECT_EQ(StrComp("a", "a", 0), 0);
}

TEST(TextComparison, HashesAgreeWithEquality) {
    EXPECT_EQ(FoldedHash("Background task"), FoldedHash("bac" + Kelvin + "ground ta" + LongS + "K"));
    EXPECT_NE(FoldedHash("a"), FoldedHash(StringView("a\0", 2)));
    std::set<uint32_t> hashes;
    for (int i = 0; i < 20000; ++i)
        hashes.insert(FoldedHash("MainWindow.Label" + std::to_string(i)));
    EXPECT_GT(hashes.size(), 19995) << "colliding identifiers";
}

TEST(TextComparison, AgreesWithASlowReferenceOnRandomTexts) {
    std::mt19937 random(20240229);
    int equal = 0;
    int found = 0;
    for (int round = 0; round < 60000; ++round) {
        const String text = RandomText(random, 24);
        const String other = RandomText(random, round % 2 ? 3 : 2);
        const String tail = text.substr(text.size() - std::min(text.size(), other.size()));
        const bool same = FoldedCharacters(tail) == FoldedCharacters(other);
        equal += same;
        ASSERT_EQ(Equal(tail, other), same) << testing::PrintToString(tail) << testing::PrintToString(other);
        if (same) {
            ASSERT_EQ(FoldedHash(tail), FoldedHash(other));
        }
        const auto start = static_cast<int64_t>(1 + random() % 4);
        const int64_t place = SlowInStr(start, text, other);
        found += place > 1;
        ASSERT_EQ(InStr(start, text, other), place)
            << testing::PrintToString(text) << testing::PrintToString(other);
        ASSERT_EQ(Finder(other).IsIn(text), SlowInStr(1, text, other) > 0);
        ASSERT_EQ(Fold(Fold(text)), Fold(text));
    }
    EXPECT_GT(equal, 1000);
    EXPECT_GT(found, 1000);
}

TEST(TextSearch, PositionsAreCharactersOfTheOriginal) {
    EXPECT_EQ(InStr(0, "abcABC", "b"), 2);
    EXPECT_EQ(InStr(3, "abcABC", "b"), 5);
    EXPECT_EQ(InStr(6, "abcABC", "b"), 0);
    EXPECT_EQ(InStr(1, StringView(), "b"), 0);
    EXPECT_EQ(InStr(1, "\u20ac\u023a\xff" + Kelvin + "elvin", "KELVIN"), 4);
    EXPECT_EQ(InStr(1, "\u20ac", "\x82"), 0) << "a byte inside a character is no match";
    EXPECT_EQ(InStr(1, "a\xe2\x82\u20ac", "\xe2\x82"), 2);
    EXPECT_EQ(InStr(1, StringView("a\0b", 3), StringView("\0", 1)), 2);
    EXPECT_EQ(InStr(1, "ab", StringView("\0", 1)), 0);
    EXPECT_EQ(InStr(3, "ab", ""), 3);
    EXPECT_EQ(InStr(4, "ab", ""), 0);
    EXPECT_EQ(InStr(INT64_MAX, "ab", "a"), 0);
    const Finder save("sAVE");
    for (const StringView text : {"Save", "do not save", "un\u00e4 \u017faving \u017fAVE."})
        EXPECT_TRUE(save.IsIn(text)) << text;
    for (const StringView text : {"", "sav", "s ave", "s\u00e4ve"})
        EXPECT_FALSE(save.IsIn(text)) << text;
    EXPECT_TRUE(Finder("").IsIn(""));
}

TEST(TextSearch, FindsACharacterByEachThatFoldsToIt) {
    int folding = 0;
    for (int32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const String character = Chr(codePoint), folded = Fold(character);
        if (folded == character) continue;
        ++folding;
        for (const StringView before : {"", "~", "\u4e00", "e"}) {
            const Finder finder(String(before) + character + "e");
            EXPECT_TRUE(finder.IsIn("e" + String(before) + folded + "E")) << codePoint;
            EXPECT_TRUE(Finder(String(before) + folded).IsIn(String(before) + character)) << codePoint;
            EXPECT_EQ(InStr(1, "\u4e8c" + character, folded), 2) << codePoint;
        }
    }
    EXPECT_GT(folding, 1000);
}

/// A block of memory, and texts in it with other bytes in between.
struct Block {
    String Bytes;
    std::vector<std::pair<size_t, size_t>> Texts;  // where they begin, and their sizes

    Block(std::mt19937& random, size_t count, size_t longestGap) {
        while (Texts.size() < count) {
            const String text = RandomText(random, random() % 8 ? 6 : 60);
            Texts.emplace_back(Bytes.size(), text.size());
            Bytes += text + RandomText(random, 2) + String(random() % (longestGap + 1), 'e');
        }
    }
    [[nodiscard]] StringView Text(size_t number) const {
        return StringView(Bytes).substr(Texts[number].first, Texts[number].second);
    }
};

TEST(TextSearch, BlocksAreSweptWithTheSameAnswers) {
    std::mt19937 random(4711);
    size_t found = 0, missed = 0;
    for (int round = 0; round < 400; ++round) {
        const Block first(random, 60, round % 4 ? 3 : 6000), second(random, 60, 0);
        const String term = RandomText(random, 2 + random() % 3);
        const Finder finder(term, {first.Bytes, StringView(second.Bytes)});
        size_t number = 0;
        for (int step = 0; step < 200; ++step) {
            number = random() % 16 ? (number + 1) % 60 : random() % 60;  // mostly in their order
            const StringView text = (step % 100 < 60 ? first : second).Text(number);
            const bool holds = SlowInStr(1, text, term) > 0;
            ASSERT_EQ(finder.IsIn(text), holds) << testing::PrintToString(text) << " round " << round;
            if (random() % 4 == 0) {
                ASSERT_EQ(finder.IsIn(String(text)), holds) << "a text elsewhere";
            }
            ++(holds ? found : missed);
        }
    }
    EXPECT_GT(found, 5000U);
    EXPECT_GT(missed, 5000U);
}

TEST(TextSearch, SweepsMissNoMatchWhereTheyPause) {
    for (size_t place = 0; place < 300; ++place) {
        String block(320, 'e');
        block.replace(20 + place, 0, "Q\u4e00");
        const StringView all = block;
        const Finder finder("q\u4e00", {all});
        EXPECT_FALSE(finder.IsIn(all.substr(0, 10)));
        EXPECT_FALSE(finder.IsIn(all.substr(10, 10)));
        EXPECT_FALSE(finder.IsIn(all.substr(20, place + 3))) << place << ": the match is not whole";
        EXPECT_TRUE(finder.IsIn(all.substr(20))) << place;
        EXPECT_FALSE(finder.IsIn(all.substr(21 + place))) << place;
    }
}

TEST(TextSearch, RepetitiveTextsAreSearchedToTheEnd) {
    const String text(200000, 'a');
    for (const String& term : {String(5000, 'A') + "ab" + String(5000, 'A'), "B" + String(90000, 'a')}) {
        EXPECT_EQ(InStr(1, text, term), 0);
        const String both = text + term;
        EXPECT_EQ(InStr(1, both, term), 200001);
        EXPECT_TRUE(Finder(term).IsIn(both));
    }
    const String rarestLast = String(40000, 'e') + "x" + String(40000, 'e');
    EXPECT_EQ(InStr(1, rarestLast + rarestLast, "xx" + String(30000, 'e')), 0);
}

}  // namespace
}  // namespace sorbel
