#include "platform/Date.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "platform/Clock.h"
#include "platform/Exceptions.h"

namespace sorbel {
namespace {

Date At(StringView text) {
    Date date;
    date.SetSQLDateTime(text);
    return date;
}

TEST(Date, StartsAtTheMomentOfTheClock) {
    ManualClock clock;
    Clock::Install(&clock);
    clock.SetLocalSeconds(951827696);
    EXPECT_EQ(Date().SQLDateTime(), "2000-02-29 12:34:56");
    clock.SetLocalSeconds(-1);
    EXPECT_EQ(Date().SQLDateTime(), "1969-12-31 23:59:59");
    clock.Advance(30);
    EXPECT_EQ(Ticks(), 30);
    Clock::Install(nullptr);

    setenv("TZ", "XXX-05:30", 1);
    tzset();
    const std::time_t before = std::time(nullptr);
    const int64_t local = Clock::Current().LocalSeconds();
    EXPECT_GE(local, before + 19800);
    EXPECT_LE(local, std::time(nullptr) + 19800);
    unsetenv("TZ");
    tzset();
    const int64_t ticks = Ticks();
    EXPECT_LE(ticks, Ticks());
}

TEST(Date, TakesExactlyItsForm) {
    for (const StringView text :
         {"2001-02-03 04:05:06", "2000-02-29 23:59:59", "0000-01-01 00:00:00", "9999-12-31 00:00:00"})
        EXPECT_EQ(At(text).SQLDateTime(), text);
    Date date = At("2001-02-03 04:05:06");
    for (const StringView text :
         {"", "2001-02-03", "2001-02-03 04:05:06 ", " 2001-02-03 04:05:06", "2001/02/03 04:05:06",
          "2001-02-03T04:05:06", "2001-2-3 04:05:06", "+001-02-03 04:05:06", "2001-00-03 04:05:06",
          "2001-13-03 04:05:06", "2001-02-29 04:05:06", "1900-02-29 04:05:06", "2001-04-31 04:05:06",
          "2001-02-00 04:05:06", "2001-02-03 24:00:00", "2001-02-03 04:60:06", "2001-02-03 04:05:60"})
        EXPECT_THROW(date.SetSQLDateTime(text), UnsupportedFormatException) << text;
    EXPECT_EQ(date, At("2001-02-03 04:05:06"));
    EXPECT_LT(At("2001-02-03 23:59:59"), At("2001-02-04 00:00:00"));
}

TEST(Date, YearKeepsTheDateValid) {
    Date date = At("2004-02-29 01:02:03");
    date.SetYear(2008);
    EXPECT_EQ(date.SQLDateTime(), "2008-02-29 01:02:03");
    date.SetYear(2001);
    EXPECT_EQ(date.SQLDateTime(), "2001-02-28 01:02:03");
    EXPECT_THROW(date.SetYear(10000), OutOfBoundsException);
    EXPECT_EQ(date.Year(), 2001);
}

TEST(Date, LongDateNeedsNoTimeZone) {
    Date::SetLocale("en_US");
    for (const char* zone : {"XXX12", "XXX-14", "UTC"}) {
        setenv("TZ", zone, 1);
        tzset();
        EXPECT_EQ(At("2001-02-03 00:00:00").LongDate(), "February 3, 2001");
        EXPECT_EQ(At("2001-02-03 23:59:59").LongDate(), "February 3, 2001");
    }
    unsetenv("TZ");
    tzset();
    EXPECT_EQ(At("1500-03-01 00:00:00").LongDate(), "March 1, 1500") << "no change of calendar";
    Date::SetLocale("de_DE");
    EXPECT_EQ(At("2001-03-03 00:00:00").LongDate(), "3. M\u00e4rz 2001");
    Date::SetLocale("");
    EXPECT_NE(At("2001-02-03 00:00:00").LongDate(), "");
}

}  // namespace
}  // namespace sorbel
