#include "interchange/ByteOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

namespace sorbel {
namespace {

void ExpectInOrder(const std::vector<String>& texts) {
    const std::vector<StringView> views(texts.begin(), texts.end());
    const std::vector<uint32_t> places = ByteOrder(views);
    std::vector<StringView> sorted = views, ordered;
    std::sort(sorted.begin(), sorted.end(), [](auto a, auto b) { return StrComp(a, b, 0) < 0; });
    for (const uint32_t place : places)
        ordered.push_back(views.at(place));
    EXPECT_EQ(ordered, sorted);
}

// Letters that try the ends of the texts, the sign of a byte and the counting of few different ones.
TEST(ByteOrder, IsThatOfTheBytes) {
    std::mt19937 random(4711);
    const StringView letters("\0\x01kK\x7F\x80\xFF", 7);
    for (const size_t count : {0u, 1u, 2u, 5u, 70u, 3000u})
        for (const auto& [prefix, longest] : {std::pair<size_t, size_t>{0, 3}, {6, 10}, {7, 30}, {150, 12}}) {
            std::vector<String> texts(count);
            for (String& text : texts) {
                text.assign(random() % 8 == 0 ? random() % (prefix + 1) : prefix, 'p');
                for (size_t left = random() % (longest + 1); left > 0; --left)
                    text += letters[random() % letters.size()];
            }
            SCOPED_TRACE(std::to_string(count) + " behind " + std::to_string(prefix));
            ExpectInOrder(texts);
        }
}

}  // namespace
}  // namespace sorbel
