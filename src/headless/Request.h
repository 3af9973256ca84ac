#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "headless/JsonText.h"
#include "platform/Text.h"

namespace sorbel::headless {

/// The fields of one line of input. Each access fails with RequestError if the field is missing or of another
/// kind.
class Request {
  public:
    /// Fails with RequestError if the line is not a JSON object.
    explicit Request(StringView line);

    /// Null counts as an absent field.
    [[nodiscard]] bool Has(StringView field) const;
    [[nodiscard]] String Text(StringView field) const;
    /// Nothing for null.
    [[nodiscard]] std::optional<String> TextOrNull(StringView field) const;
    [[nodiscard]] std::vector<String> Texts(StringView field) const;
    /// A whole number within the limits, both included.
    [[nodiscard]] int64_t Number(StringView field, int64_t lowest, int64_t highest) const;
    /// `missing` stands for an absent field.
    [[nodiscard]] int64_t Number(StringView field, int64_t lowest, int64_t highest, int64_t missing) const;
    /// A length or distance on the screen.
    [[nodiscard]] int Points(StringView field) const;

  private:
    [[nodiscard]] const Json& Field(StringView field) const;

    Json mFields;
};

}  // namespace sorbel::headless
