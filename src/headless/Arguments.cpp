#include "headless/Arguments.h"

#include <chrono>
#include <filesystem>

#include "platform/Date.h"
#include "platform/Exceptions.h"

namespace sorbel::headless {

const char* const Usage =
    "usage: sorbel-headless [--documents DIR] [--resources DIR] [--state DIR] [--now \"2026-01-31 "
    "12:00:00\"] "
    "[--locale en_US]\n"
    "       sorbel-headless --help | --version\n"
    "Reads one JSON object a line and answers each with one.\n";

namespace {

int NumberAt(StringView text, size_t at, size_t length) {
    return std::stoi(String(text.substr(at, length)));
}

/// Seconds since 1970 of a moment in its SQL form; nothing for another text.
std::optional<int64_t> LocalSeconds(const String& text) {
    try {
        Date().SetSQLDateTime(text);
    } catch (const UnsupportedFormatException&) {
        return std::nullopt;
    }
    using namespace std::chrono;
    const sys_days day = year(NumberAt(text, 0, 4)) / NumberAt(text, 5, 2) / NumberAt(text, 8, 2);
    const auto time =
        hours(NumberAt(text, 11, 2)) + minutes(NumberAt(text, 14, 2)) + seconds(NumberAt(text, 17, 2));
    return (seconds(day.time_since_epoch()) + time).count();
}

bool Take(const String& name, const String& value, Arguments& arguments) {
    if (name == "--documents") {
        arguments.Documents = value;
    } else if (name == "--resources") {
        arguments.Resources = value;
    } else if (name == "--state") {
        arguments.State = value;
    } else if (name == "--locale") {
        arguments.Locale = value;
    } else if (name == "--now") {
        arguments.Now = LocalSeconds(value);
        return arguments.Now.has_value();
    } else {
        return false;
    }
    return true;
}

}  // namespace

std::optional<Arguments> ParseArguments(const std::vector<String>& words) {
    if (words.size() % 2 != 0) return std::nullopt;
    Arguments arguments;
    for (size_t index = 0; index < words.size(); index += 2)
        if (!Take(words[index], words[index + 1], arguments)) return std::nullopt;
    return arguments;
}

String DefaultResources() {
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
    return program.parent_path().parent_path() / "share/sorbel/Resources";
}

}  // namespace sorbel::headless
