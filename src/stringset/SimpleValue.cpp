#include "stringset/SimpleValue.h"

#include <charconv>
#include <limits>
#include <string>
#include <system_error>

namespace sorbel {

SharedText SimpleValue::Digits() const {
    return SharedText(std::to_string(mInteger));
}

int64_t SimpleValue::LeadingNumber(StringView text) {
    const size_t start = text.find_first_not_of(" \t\r\n");
    if (start == StringView::npos) return 0;
    text.remove_prefix(start);
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    if (text.empty() || text.front() == '-') return 0;

    using Limits = std::numeric_limits<int32_t>;
    int64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range || number > Limits::max())
        return negative ? Limits::min() : Limits::max();
    return negative ? -number : number;
}

}  // namespace sorbel
