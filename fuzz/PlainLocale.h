#pragma once

#include <optional>
#include <vector>

#include "PlainDocument.h"

namespace sorbel::fuzz {

/// What a locale file holds, read a second way: by a reader that copies everything, knows no hurry and calls
/// itself for each version in the file.
struct PlainLocale {
    PlainDocument Document;
    std::optional<String> Application;
    String Date = "1970-01-01 00:00:00";  // the present moment of a clock that stands still
    int64_t FileVersion = 0;
    std::vector<PlainLocale> History;
    String Language, Tool;
    bool Valid = false;

    bool operator==(const PlainLocale&) const = default;
};

/// Nothing for what this reader has no opinion on: fields that reach beyond their entry, a deep history, and
/// bytes that are no locale file.
[[nodiscard]] std::optional<PlainLocale> ReadPlainly(StringView bytes);

/// Whether the program read the same, apart from application bytes that name no file here.
[[nodiscard]] bool Same(const PlainLocale& plain, const LocalizedStringSet& set);

}  // namespace sorbel::fuzz
