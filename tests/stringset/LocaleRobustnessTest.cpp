#include <gtest/gtest.h>

#include "LocaleBytes.h"

namespace sorbel::testing {

TEST(LocaleRobustness, EveryTruncationKeepsWhatWasReadBefore) {
    const String first = Magic + Text("lang", "de") + Entry("a", "A", "1");
    const String second = first + Data("hist", Magic + Entry("b", "B", "2"));
    const String file = second + Entry("c", "C", "3");
    for (size_t size = 0; size <= file.size(); ++size) {
        const auto [set, valid] = Read(file.substr(0, size));
        const bool whole = size == 8 || size == 8 + 18 || size == first.size() || size == second.size() ||
                           size == file.size();
        EXPECT_EQ(valid, whole) << size;
        EXPECT_EQ(Values(*set, "a"), size >= first.size() ? "A|1" : "-") << size;
        EXPECT_EQ(set->History.size(), size >= second.size() ? 1u : 0u) << size;
        EXPECT_EQ(Values(*set, "c"), size >= file.size() ? "C|3" : "-") << size;
    }
}

TEST(LocaleRobustness, LengthsThatLeadOutOfTheFileEndTheRead) {
    const String good = Entry("a", "A", "1");
    for (const int64_t length :
         {INT64_C(-1), INT64_C(-8), INT64_C(-16), int64_t{INT32_MIN}, int64_t{INT32_MAX}, INT64_C(100000)}) {
        const String bad[] = {"enty" + Int(length),
                              "what" + Int(length),
                              Chunk("lang", "strn" + Int(length)),
                              Chunk("lang", "bind" + Int(length)),
                              Chunk("lang", "what" + Int(length)),
                              Chunk("vers", "long" + Int(length) + Int(0)),
                              Chunk("hist", "bind" + Int(length)),
                              Chunk("enty", "what" + Int(length)),
                              Chunk("enty", Chunk("idnt", "strn" + Int(length)))};
        for (const String& chunk : bad) {
            const auto [set, valid] = Read(Magic + good + chunk + Entry("b", "B", "2"));
            EXPECT_FALSE(valid) << chunk;
            EXPECT_EQ(Values(*set, "a") + Values(*set, "b"), "A|1-") << chunk;
        }
    }
}

// Each entry claims all that follows it: read as told, they would hold the square of the file's size.
TEST(LocaleRobustness, EntriesOneOverTheOther) {
    constexpr int64_t count = 20000;
    String file = Magic;
    for (int64_t left = count - 1; left >= 0; --left)
        file += "enty" + Int(16) + "idnt" + Int(0) + "strn" + Int(left * 24);
    const auto [set, valid] = Read(file);
    EXPECT_FALSE(valid);
    EXPECT_LT(set->ToBytes().size(), 4 * file.size());
}

/// An entry whose value takes in so many of the bytes that follow it.
String Overrunning(int64_t bytes) {
    return Chunk("enty", Text("idnt", "x") + "tval" + Int(8) + "strn" + Int(bytes));
}

// Together they may read as many bytes again as the file has, and not one more.
TEST(LocaleRobustness, TheLimitOfOverrunningEntries) {
    const String skipped = Text("lang", String(1000, 'x'));  // taken in by the entry before it, then read
    const auto file = [&](int64_t last) {
        return Magic + Overrunning(1000) + Overrunning(last) + skipped;
    };
    const int64_t size = LenB(file(0));
    EXPECT_TRUE(Read(file(size - 1000)).Valid);
    EXPECT_FALSE(Read(file(size - 999)).Valid);
}

TEST(LocaleRobustness, AVersionThatSpendsTheLimitSpoilsTheFile) {
    const String skipped = Text("lang", String(1000, 'x'));
    const auto version = [&](int64_t last) {
        return Data("hist", Magic + Overrunning(900) + Overrunning(last) + skipped);
    };
    for (const String& after : {String(), Entry("a", "A", "1"), Data("hist", Magic), Overrunning(0)}) {
        const auto file = [&](int64_t last, bool deep) {
            return Magic + (deep ? Data("hist", Magic + version(last)) : version(last)) + after;
        };
        for (const bool deep : {false, true}) {
            const int64_t left = LenB(file(0, deep)) - 900;
            EXPECT_TRUE(Read(file(left, deep)).Valid) << after;
            EXPECT_FALSE(Read(file(left + 1, deep)).Valid) << after;
        }
    }
}

TEST(LocaleRobustness, DeepHistoryUsesNoCallStack) {
    constexpr int64_t levels = 100000;
    String file;
    for (int64_t inside = levels; inside > 0; --inside) {
        const int64_t length = inside * 24 - 16;
        file += Magic + "hist" + Int(length + 8) + "bind" + Int(length);
    }
    file += Magic;
    const auto depth = [](std::shared_ptr<LocalizedStringSet> set) {
        int64_t count = 0;
        for (; !set->History.empty(); ++count)
            set = std::shared_ptr(set->History[0]);
        return count;
    };
    auto [set, valid] = Read(file);
    ASSERT_TRUE(valid);
    EXPECT_EQ(depth(set), levels);
    const String saved = set->ToBytes();
    set.reset();
    const auto again = Read(saved);
    EXPECT_TRUE(again.Valid);
    EXPECT_EQ(depth(again.Set), levels);
    EXPECT_EQ(again.Set->ToBytes(), saved);

    const auto shared = again.Set->History[0]->History[0];  // outlives the versions around it
    again.Set->History.clear();
    EXPECT_EQ(depth(shared), levels - 2);
    file.back() = 'x';  // the innermost file alone is dropped
    const auto spoilt = Read(file);
    EXPECT_TRUE(spoilt.Valid);
    EXPECT_EQ(depth(spoilt.Set), levels - 1);
}

}  // namespace sorbel::testing
