// The date as people read it. Apart from the rest, so that programs that show no date start without the large
// library for it.
#include <unicode/datefmt.h>
#include <unicode/gregocal.h>

#include <chrono>
#include <memory>

#include "platform/Date.h"
#include "platform/Dictionary.h"

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

/// What is kept of the locale asked for last, since forming a date takes long and making the format far
/// longer: a document's versions are named anew after every change.
struct Kept {
    icu::Locale For;
    std::unique_ptr<icu::DateFormat> Format;  // null if there is none
    Dictionary<int64_t, String> Texts;        // of days since 1970
};

/// By each thread for itself.
Kept& KeptForLocale() {
    thread_local Kept kept;
    const icu::Locale locale = Locale().empty() ? icu::Locale::getDefault() : icu::Locale(Locale().c_str());
    if (!kept.Format || kept.For != locale) kept = {locale, MakeLongFormat(locale), {}};
    return kept;
}

String Formatted(const icu::DateFormat& format, sys_days day) {
    icu::UnicodeString text;
    format.format(static_cast<UDate>(sys_time<milliseconds>(day).time_since_epoch().count()), text);
    String result;
    return text.toUTF8String(result);
}

}  // namespace

String Date::LongDate() const {
    Kept& kept = KeptForLocale();
    if (!kept.Format) return SQLDateTime().substr(0, 10);  // ICU without its data
    const sys_days midnight(
        year_month_day(year(mYear), month(static_cast<unsigned>(mMonth)), day(static_cast<unsigned>(mDay))));
    const int64_t days = midnight.time_since_epoch().count();
    if (!kept.Texts.HasKey(days)) kept.Texts.Set(days, Formatted(*kept.Format, midnight));
    return kept.Texts.At(days);
}

void Date::SetLocale(StringView locale) {
    Locale() = locale;
}

}  // namespace sorbel
