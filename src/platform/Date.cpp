#include "platform/Date.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>

#include "platform/Clock.h"
#include "platform/Exceptions.h"

namespace sorbel {

namespace {

using namespace std::chrono;

constexpr StringView Form = "0000-00-00 00:00:00";

bool HasForm(StringView text) {
    if (text.size() != Form.size()) return false;
    for (size_t i = 0; i < Form.size(); ++i) {
        const bool fits = Form[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == Form[i];
        if (!fits) return false;
    }
    return true;
}

int Number(StringView text, size_t at, size_t digits) {
    int number = 0;
    std::from_chars(text.data() + at, text.data() + at + digits, number);
    return number;
}

year_month_day Civil(int aYear, int aMonth, int aDay) {
    return year(aYear) / month(static_cast<unsigned>(aMonth)) / day(static_cast<unsigned>(aDay));
}

}  // namespace

Date::Date() : Date(Clock::Current().LocalSeconds()) {}

Date::Date(int64_t localSeconds) {
    const sys_seconds now{seconds(localSeconds)};
    const auto midnight = floor<days>(now);
    const year_month_day civil(midnight);
    const hh_mm_ss time(now - midnight);
    mYear = static_cast<int>(civil.year());
    mMonth = static_cast<int8_t>(static_cast<unsigned>(civil.month()));
    mDay = static_cast<int8_t>(static_cast<unsigned>(civil.day()));
    mHour = static_cast<int8_t>(time.hours().count());
    mMinute = static_cast<int8_t>(time.minutes().count());
    mSecond = static_cast<int8_t>(time.seconds().count());
}

String Date::SQLDateTime() const {
    std::array<char, 80> text;
    const int size = std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", mYear, mMonth,
                                   mDay, mHour, mMinute, mSecond);
    return {text.data(), static_cast<size_t>(size)};
}

void Date::SetSQLDateTime(StringView text) {
    if (!HasForm(text)) throw UnsupportedFormatException("Not a date and time.");
    const auto civil = Civil(Number(text, 0, 4), Number(text, 5, 2), Number(text, 8, 2));
    const int hour = Number(text, 11, 2);
    const int minute = Number(text, 14, 2);
    const int second = Number(text, 17, 2);
    if (!civil.ok() || hour > 23 || minute > 59 || second > 59)
        throw UnsupportedFormatException("No such date or time.");
    mYear = static_cast<int>(civil.year());
    mMonth = static_cast<int8_t>(static_cast<unsigned>(civil.month()));
    mDay = static_cast<int8_t>(static_cast<unsigned>(civil.day()));
    mHour = static_cast<int8_t>(hour);
    mMinute = static_cast<int8_t>(minute);
    mSecond = static_cast<int8_t>(second);
}

void Date::SetYear(int aYear) {
    if (aYear < 0 || aYear > 9999) throw OutOfBoundsException("No such year.");
    mYear = aYear;
    if (!Civil(mYear, mMonth, mDay).ok()) mDay = 28;  // only 29 February can be missing
}

}  // namespace sorbel
