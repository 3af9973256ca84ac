#pragma once

#include <compare>
#include <cstdint>

#include "platform/Text.h"

namespace sorbel {

/// A local date and time of day, to the second, without a time zone.
class Date {
  public:
    /// The present moment of the `Clock`.
    Date();
    /// A moment as the `Clock` counts it: seconds since 1970-01-01 00:00:00 in local time.
    [[nodiscard]] static Date FromLocalSeconds(int64_t seconds) { return Date(seconds); }

    /// "2001-02-03 04:05:06".
    [[nodiscard]] String SQLDateTime() const;
    /// Takes exactly that form, of an existing date; fails with UnsupportedFormatException and leaves the
    /// date as it was.
    void SetSQLDateTime(StringView text);
    /// The date without a time of day, in the long form of the user's locale.
    [[nodiscard]] String LongDate() const;
    /// The time of day as "HH:MM".
    [[nodiscard]] String ShortTime() const { return SQLDateTime().substr(11, 5); }

    [[nodiscard]] int Year() const { return mYear; }
    /// From 0 to 9999, or fails with OutOfBoundsException. 29 February becomes the 28th where it has to.
    void SetYear(int year);

    auto operator<=>(const Date&) const = default;

    /// The locale for `LongDate`, such as "en_US"; empty for that of the user.
    static void SetLocale(StringView locale);

  private:
    explicit Date(int64_t localSeconds);

    int32_t mYear = 0;
    int8_t mMonth = 1, mDay = 1, mHour = 0, mMinute = 0, mSecond = 0;
};

}  // namespace sorbel
