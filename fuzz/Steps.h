#pragma once

#include <algorithm>
#include <memory>

#include "platform/Text.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel::fuzz {

/// Takes an input as steps to take: numbers, texts and small documents, from its head. Numbers are 0 and
/// texts empty once it is used up.
class Steps {
  public:
    explicit Steps(StringView input) : mRest(input) {}

    [[nodiscard]] bool Empty() const { return mRest.empty(); }
    uint8_t Byte() {
        if (mRest.empty()) return 0;
        const auto byte = static_cast<uint8_t>(mRest[0]);
        mRest.remove_prefix(1);
        return byte;
    }
    /// From 0 to below `limit`.
    size_t Below(size_t limit) { return Byte() % limit; }
    bool Flag() { return Byte() % 2 == 1; }
    template <typename Choice, size_t Count>
    const Choice& Pick(const Choice (&choices)[Count]) {
        return choices[Below(Count)];
    }

    String Text();
    String Identifier();
    std::shared_ptr<LocalizedStringSet> Document();

  private:
    String Bytes();

    StringView mRest;
};

}  // namespace sorbel::fuzz
