#include "headless/Request.h"

namespace sorbel::headless {

namespace {

constexpr int FarthestPoint = 1'000'000;

[[noreturn]] void Refuse(StringView field, const String& why) {
    throw RequestError("the field \"" + String(field) + "\" " + why);
}

String TextOf(const Json& value, StringView field) {
    if (!value.is_string()) Refuse(field, "is not a text");
    return value.get<String>();
}

}  // namespace

Request::Request(StringView line) : mFields(ParseJson(line)) {
    if (!mFields.is_object()) throw RequestError("the request is not a JSON object");
}

bool Request::Has(StringView field) const {
    const auto found = mFields.find(field);
    return found != mFields.end() && !found->is_null();
}

const Json& Request::Field(StringView field) const {
    const auto found = mFields.find(field);
    if (found == mFields.end()) Refuse(field, "is missing");
    return *found;
}

String Request::Text(StringView field) const {
    return TextOf(Field(field), field);
}

std::optional<String> Request::TextOrNull(StringView field) const {
    const Json& value = Field(field);
    if (value.is_null()) return std::nullopt;
    return TextOf(value, field);
}

std::vector<String> Request::Texts(StringView field) const {
    const Json& value = Field(field);
    if (!value.is_array()) Refuse(field, "is not an array");
    std::vector<String> texts;
    for (const Json& element : value)
        texts.push_back(TextOf(element, field));
    return texts;
}

int64_t Request::Number(StringView field, int64_t lowest, int64_t highest) const {
    const Json& value = Field(field);
    if (!value.is_number_integer()) Refuse(field, "is not a whole number");
    const bool tooLarge =
        value.is_number_unsigned() && value.get<uint64_t>() > static_cast<uint64_t>(INT64_MAX);
    const int64_t number = tooLarge ? INT64_MAX : value.get<int64_t>();
    if (number < lowest || number > highest)
        Refuse(field, "is not from " + std::to_string(lowest) + " to " + std::to_string(highest));
    return number;
}

int64_t Request::Number(StringView field, int64_t lowest, int64_t highest, int64_t missing) const {
    return Has(field) ? Number(field, lowest, highest) : missing;
}

int Request::Points(StringView field) const {
    return static_cast<int>(Number(field, -FarthestPoint, FarthestPoint));
}

}  // namespace sorbel::headless
