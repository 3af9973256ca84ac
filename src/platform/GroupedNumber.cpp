#include "platform/GroupedNumber.h"

#include <unicode/numfmt.h>

#include <memory>

namespace sorbel {

String GroupedNumber(int64_t number, StringView locale) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale of = locale.empty() ? icu::Locale::getDefault() : icu::Locale(String(locale).c_str());
    const std::unique_ptr<icu::NumberFormat> format(icu::NumberFormat::createInstance(of, status));
    if (U_FAILURE(status) || !format) return std::to_string(number);  // ICU without its data
    icu::UnicodeString text;
    format->format(number, text);
    String result;
    return text.toUTF8String(result);
}

}  // namespace sorbel
