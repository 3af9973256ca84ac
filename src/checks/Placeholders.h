#pragma once

#include <vector>

#include "platform/Text.h"

namespace sorbel::checks {

/// What a program replaces in a text, each as it stands there, in order. They are parts of the text.
///
/// - "%1" to "%9", "%10" and so on, also "%L1"; of "%1s" only "%1", for what follows is more often a word
/// - "%@", "%d", "%s" and the other conversions of printf (ISO C 7.21.6.1) with their width, precision, size
///   and position: "%02d", "%.2f", "%lld", "%1$@"; "%n", the number in Qt's plural forms
/// - "<0>", "</0>", "<0/>"
/// - "{0}", "{0:N2}", "{name}"
///
/// Not "%%", nor a "%" that is a percent sign: in front of a blank, behind a digit ("100%ig"), or before a
/// word ("%free": conversions but d, s and @ end where no letter follows). Nor "<none>" or "<b>": what
/// stands in such brackets may have to be translated.
[[nodiscard]] std::vector<StringView> FindPlaceholders(StringView text);

/// What the translation lacks and what it has too much, each once, sorted.
struct PlaceholderDifference {
    std::vector<String> Missing, Added;
};
/// The order plays no part. Where only one text tells positions ("%1$s"), they don't count. "%50" is a
/// percentage where the other text has "50%" or "50 %", as in Turkish.
[[nodiscard]] PlaceholderDifference ComparePlaceholders(StringView defaultText, StringView translation);

}  // namespace sorbel::checks
