#pragma once

#include <functional>

#include "checks/Row.h"
#include "exchange/CommandLine.h"
#include "platform/Text.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

enum class ReportFormat { Text, Json };

/// What "--format" says; text if it is not given. Fails with WrongUse.
[[nodiscard]] ReportFormat ReportFormatOf(const Arguments& arguments);

/// A text for a line of a report: line breaks and tabs as "\n", "\r" and "\t", and U+FFFD for other control
/// characters, which a terminal would obey, and for bytes that are not UTF-8.
[[nodiscard]] String OnOneLine(StringView text);

/// A text as a string of JSON (RFC 8259), quotation marks included. Bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] String JsonString(StringView text);

/// An array of JSON from its elements: one a line, since they may be many.
[[nodiscard]] String JsonArray(const std::vector<String>& elements);

/// All rows of a document, in the order in which they are exported (Rows.h), whatever bytes they hold.
void ForEachRow(const LocalizedStringSet& set, const std::function<void(const checks::Row& row)>& visit);

}  // namespace sorbel
