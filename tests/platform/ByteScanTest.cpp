#include "platform/ByteScan.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace sorbel::coding {

namespace {

std::vector<size_t> Scanned(StringView text, StringView what) {
    std::vector<size_t> places;
    ByteScan scan(text, what);
    for (size_t at = scan.Find(0); at != StringView::npos; at = scan.Find(at + 1))
        places.push_back(at);
    return places;
}

std::vector<size_t> Places(StringView text, StringView what) {
    std::vector<size_t> places;
    for (size_t at = text.find(what); at != StringView::npos; at = text.find(what, at + 1))
        places.push_back(at);
    return places;
}

}  // namespace

TEST(ByteScan, FindsEveryPlace) {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        String text(random() % 400, ' ');
        for (char& c : text)
            c = "aab\xFFz"[random() % 5];
        String what(1 + random() % (round % 10 == 0 ? 80 : 4), ' ');
        for (char& c : what)
            c = "ab\xFFz"[random() % 4];
        ASSERT_EQ(Scanned(text, what), Places(text, what)) << text << " / " << what;
    }
}

TEST(ByteScan, RepetitiveTextsStayLinear) {
    const String text(200'000, 'a');
    const String what = String(2000, 'a') + 'b';
    EXPECT_EQ(Scanned(text, what), std::vector<size_t>());
    EXPECT_EQ(Scanned(text + what, what), std::vector<size_t>{200'000});
}

}  // namespace sorbel::coding
