#include "platform/GroupedNumber.h"

#include <gtest/gtest.h>

namespace sorbel {

TEST(GroupedNumber, IsWrittenAsUsualInALocale) {
    EXPECT_EQ(GroupedNumber(3941, "en_US"), "3,941");
    EXPECT_EQ(GroupedNumber(1234567, "de_DE"), "1.234.567");
    EXPECT_EQ(GroupedNumber(1234567, "hi_IN"), "12,34,567");
    EXPECT_EQ(GroupedNumber(0, "no such locale"), "0");
    EXPECT_NE(GroupedNumber(7), "");
}

}  // namespace sorbel
