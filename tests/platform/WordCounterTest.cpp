#include <gtest/gtest.h>

#include "platform/WordCounter.h"

namespace sorbel {
namespace {

TEST(WordCounter, CountsWhatUnicodeCallsWords) {
    WordCounter counter;
    const struct {
        StringView Text;
        int64_t Words;
    } cases[] = {{"", 0},
                 {" \t\n", 0},
                 {"...!", 0},
                 {"one", 1},
                 {"two words", 2},
                 {"  it's  3.5, isn't it? ", 4},
                 {"snake_case and-dash", 3},
                 {"%1 of %2", 3},
                 {"naïve Größe", 2},
                 {"a\xFF\xFE b\xC3", 2},
                 {"\xF0\x9F", 0}};
    for (int round = 0; round < 2; ++round)
        for (const auto& one : cases)
            EXPECT_EQ(counter.Count(one.Text), one.Words) << one.Text;
    EXPECT_EQ(counter.Count(StringView("one\0two", 7)), 2);
    EXPECT_GT(counter.Count("สวัสดีชาวโลก"), 1) << "a dictionary finds words without blanks";
    String text;
    for (int i = 0; i < 5000; ++i)
        text += "ab ";
    EXPECT_EQ(counter.Count(text), 5000);
}

}  // namespace
}  // namespace sorbel
