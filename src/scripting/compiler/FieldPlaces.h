#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/Text.h"

namespace sorbel::script {

struct Text;

/// Finds the fields of texts. Remembers where they begin in the last few texts, so that a walk from field to
/// field does not begin anew at each. A text that it remembers is marked as `Watched` and has to be forgotten
/// before it changes or goes.
class FieldPlaces {
  public:
    /// Field `index` (from 1), empty if there is none. A text may be null, which is empty.
    [[nodiscard]] StringView Field(Text* text, StringView delimiter, int64_t index);
    [[nodiscard]] int64_t Count(Text* text, StringView delimiter);
    void Forget(const Text* text);

  private:
    static constexpr int64_t Step = 64;
    // A short text is as quickly walked through, and a long delimiter would have to be kept.
    [[nodiscard]] static bool IsWorth(StringView text, StringView delimiter) {
        return text.size() >= 256 && delimiter.size() <= 256;
    }

    struct Places {
        const Text* In = nullptr;
        String Delimiter;
        std::vector<uint32_t> Starts;  // of each 64th field, from the first
        int64_t Last = 1;              // the field that was reached last
        size_t LastStart = 0;
        int64_t Total = 0;  // of all fields, once they were counted
        /// Goes to a field; false if there is none.
        bool GoTo(StringView text, StringView delimiter, int64_t index);
    };
    Places& Of(Text& text, StringView delimiter);

    std::array<Places, 4> mKnown;
    size_t mOldest = 0;
};

}  // namespace sorbel::script
