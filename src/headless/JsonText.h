#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "platform/Text.h"

namespace sorbel::headless {

/// Fields keep the order in which they were added. Texts inside are the program's own bytes, valid UTF-8 or
/// not, so only the two functions here may turn a value into text or back.
using Json = nlohmann::ordered_json;

/// A request that cannot be carried out; the message says why.
class RequestError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The value that a line of JSON holds. An escaped lone surrogate from \udc80 to \udcff stands for the byte
/// 0x80 to 0xff. Fails with RequestError.
[[nodiscard]] Json ParseJson(StringView line);

/// The value on one line, without a line end. Each byte that is not part of valid UTF-8 becomes such a
/// surrogate.
[[nodiscard]] String ToJson(const Json& value);

}  // namespace sorbel::headless
