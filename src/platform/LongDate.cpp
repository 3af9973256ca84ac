// The date as people read it. Apart from the rest, so that programs that show no date start without the large
// library for it.
#include <unicode/datefmt.h>
#include <unicode/gregocal.h>

#include <chrono>
#include <memory>

#include "platform/Date.h"

namespace sorbel {

namespace {

using namespace std::chrono;

String& Locale() {
    static String locale;
    return locale;
}

/// The year count runs on unchanged into the past, as everywhere else here; a calendar that never was
/// Gregorian has no such change.
void UseGregorianThroughout(icu::DateFormat& format) {
    std::unique_ptr<icu::Calendar> calendar(format.getCalendar()->clone());
    auto* gregorian = dynamic_cast<icu::GregorianCalendar*>(calendar.get());
    if (!gregorian) return;
    constexpr UDate longAgo = -1e15;
    UErrorCode status = U_ZERO_ERROR;
    gregorian->setGregorianChange(longAgo, status);
    if (U_SUCCESS(status)) format.adoptCalendar(calendar.release());
}

std::unique_ptr<icu::DateFormat> MakeLongFormat(const icu::Locale& locale) {
    std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(icu::DateFormat::kLong, locale));
    if (!format) return nullptr;
    format->setTimeZone(*icu::TimeZone::getGMT());
    UseGregorianThroughout(*format);
    return format;
}

/// Null if there is none. Making one takes longer than all else about a date, so the last one is kept, by
/// each thread for itself.
const icu::DateFormat* LongFormat() {
    struct Kept {
        icu::Locale For;
        std::unique_ptr<icu::DateFormat> Format;
    };
    thread_local Kept kept;
    const icu::Locale locale = Locale().empty() ? icu::Locale::getDefault() : icu::Locale(Locale().c_str());
    if (!kept.Format || kept.For != locale) kept = {locale, MakeLongFormat(locale)};
    return kept.Format.get();
}

}  // namespace

String Date::LongDate() const {
    const icu::DateFormat* const format = LongFormat();
    if (!format) return SQLDateTime().substr(0, 10);  // ICU without its data
    const year_month_day civil(year(mYear), month(static_cast<unsigned>(mMonth)),
                               day(static_cast<unsigned>(mDay)));
    const auto midnight = sys_days(civil).time_since_epoch();
    icu::UnicodeString text;
    format->format(static_cast<UDate>(duration_cast<milliseconds>(midnight).count()), text);
    String result;
    return text.toUTF8String(result);
}

void Date::SetLocale(StringView locale) {
    Locale() = locale;
}

}  // namespace sorbel
