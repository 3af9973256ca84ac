#pragma once

#include <cstdint>

#include "platform/SharedText.h"
#include "platform/Text.h"

namespace sorbel {

/// A value as a locale file holds it. The type is the file's choice, whatever the chunk is for, so each reads
/// as each. Internal to this folder.
class SimpleValue {
  public:
    SimpleValue() = default;  ///< of an unknown type: empty text, 0
    explicit SimpleValue(int32_t integer) : mInteger(integer), mIsInteger(true) {}
    explicit SimpleValue(StringView text) : mText(text) {}

    /// The bytes in the file; empty for a number.
    [[nodiscard]] StringView Bytes() const { return mText; }
    /// Borrowed from the file, unless it is a number's decimal text.
    [[nodiscard]] SharedText AsText() const { return mIsInteger ? Digits() : SharedText::Borrow(mText); }
    /// The number that a text begins with, else 0; held within 32 bits, so that a save writes the same
    /// number.
    [[nodiscard]] int64_t AsInteger() const { return mIsInteger ? mInteger : LeadingNumber(mText); }

  private:
    [[nodiscard]] SharedText Digits() const;
    static int64_t LeadingNumber(StringView text);

    StringView mText;
    int32_t mInteger = 0;
    bool mIsInteger = false;
};

}  // namespace sorbel
