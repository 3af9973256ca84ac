#include "editing/rules/WordComparison.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>

#include "platform/Text.h"

namespace sorbel {
namespace {

using Words = std::vector<StringView>;

TEST(SplitIntoWords, KeepsSeparatorsAndEmptyWordsBetweenThem) {
    EXPECT_EQ(SplitIntoWords(""), Words());
    EXPECT_EQ(SplitIntoWords("a, b"), (Words{"a", ",", "", " ", "b"}));
    EXPECT_EQ(SplitIntoWords("(a)"), (Words{"", "(", "a", ")"}));
    EXPECT_EQ(SplitIntoWords("a  b"), (Words{"a", " ", "", " ", "b"}));
    EXPECT_EQ(SplitIntoWords("C:\\x|\"y\""), (Words{"C", ":", "", "\\", "x", "|", "", "\"", "y", "\""}));
    EXPECT_EQ(SplitIntoWords("Zwei\nZeilen_ä1 é;"), (Words{"Zwei\nZeilen_ä1", " ", "é;"}));
}

struct Marked {
    String Common, Unique;  // "[word]" for each word, by its mark
    bool operator==(const Marked&) const = default;
};

/// The walk as one would do it by hand, with a search of both lists for each decision.
void WalkByHand(std::deque<String> current, std::deque<String> older, Marked& currentMarks,
                Marked& olderMarks) {
    const auto find = [](const std::deque<String>& list, const String& word) {
        for (size_t at = 1; at < list.size(); ++at)
            if (list[at] == word) return static_cast<int>(at);
        return -1;
    };
    const auto take = [](std::deque<String>& list, String& into) {
        into += list.front() + "\x01";
        list.pop_front();
    };
    int mode = 0;
    bool alternating = false;
    while (!current.empty() || !older.empty()) {
        if (alternating) {
            if (mode == 1) {
                mode = 2;
            } else {
                mode = 0;
                alternating = false;
            }
        }
        if (!current.empty() && !older.empty() && current.front() == older.front()) {
            mode = 0;
            alternating = false;
            take(current, currentMarks.Common);
            take(older, olderMarks.Common);
            continue;
        }
        if (mode == 0 || (mode == 1 && current.empty()) || (mode == 2 && older.empty())) {
            if (older.empty()) {
                mode = 1;
            } else if (current.empty()) {
                mode = 2;
            } else {
                const int a = find(older, current.front()), b = find(current, older.front());
                mode = a >= 0 && a < b ? 2 : 1;
                if (a == -1 && b == -1) alternating = true;
            }
        }
        if (mode == 1)
            take(current, currentMarks.Unique);
        else
            take(older, olderMarks.Unique);
    }
}

Marked MarksOf(const std::vector<WordRun>& runs, String* whole) {
    Marked marks;
    for (const WordRun& run : runs) {
        *whole += run.Text;
        (run.Common ? marks.Common : marks.Unique) += run.Text;
    }
    return marks;
}

String Plain(String marked) {
    std::erase(marked, '\x01');
    return marked;
}

TEST(CompareWords, MarksAsTheGreedyWalkDoes) {
    std::mt19937 random(7);
    const char* const parts[] = {"a", "b", "Hello", "hello", " ", ",", "there", "world", "", "Ä"};
    for (int round = 0; round < 3000; ++round) {
        const auto make = [&] {
            String text;
            for (auto left = random() % 14; left > 0; --left)
                text += parts[random() % (round % 2 ? 10 : 5)];
            return text;
        };
        const String current = make(), older = make();
        Marked currentMarks, olderMarks;
        const auto list = [](const String& text) {
            const auto words = SplitIntoWords(text);
            return std::deque<String>(words.begin(), words.end());
        };
        WalkByHand(list(current), list(older), currentMarks, olderMarks);
        const WordComparison result = CompareWords(current, older);
        String wholeCurrent, wholeOlder;
        const Marked gotCurrent = MarksOf(result.Current, &wholeCurrent),
                     gotOlder = MarksOf(result.Older, &wholeOlder);
        ASSERT_EQ(wholeCurrent, current);
        ASSERT_EQ(wholeOlder, older);
        ASSERT_EQ(gotCurrent, (Marked{Plain(currentMarks.Common), Plain(currentMarks.Unique)}))
            << current << "|" << older;
        ASSERT_EQ(gotOlder, (Marked{Plain(olderMarks.Common), Plain(olderMarks.Unique)}))
            << current << "|" << older;
    }
}

TEST(CompareWords, CountsAPassedWordAsNewAndRemoved) {
    const WordComparison result = CompareWords("Hello world", "Hello there world");
    ASSERT_EQ(result.Current.size(), 2u);
    EXPECT_EQ(result.Current[0].Text, "Hello ");
    EXPECT_TRUE(result.Current[0].Common);
    EXPECT_EQ(result.Current[1].Text, "world");
    EXPECT_FALSE(result.Current[1].Common);
    ASSERT_EQ(result.Older.size(), 2u);
    EXPECT_EQ(result.Older[1].Text, "there world");
    EXPECT_FALSE(result.Older[1].Common);
}

}  // namespace
}  // namespace sorbel
