#include "stringset/PlatformTable.h"

#include <iterator>
#include <utility>

namespace sorbel {

namespace {

struct PlatformName {
    StringView Text, Icon;
};
constexpr PlatformName PlatformNames[] = {
    {"Any", ""}, {"Mac OS", "OS-Mac"}, {"Windows", "OS-Windows"}, {"Linux", "OS-Linux"}};

PlatformName NameOf(int64_t platform) {
    const bool known = platform >= 0 && platform < std::ssize(PlatformNames);
    return known ? PlatformNames[platform] : PlatformName{};
}

}  // namespace

StringView PlatformText(int64_t platform) {
    return NameOf(platform).Text;
}

StringView PlatformIconName(int64_t platform) {
    return NameOf(platform).Icon;
}

PlatformTable::PlatformTable(const PlatformTable& other)
    : mFirst(other.mFirst),
      mMore(other.mMore ? std::make_unique<Dictionary<int64_t, Item>>(*other.mMore) : nullptr),
      mHasFirst(other.mHasFirst) {}

PlatformTable& PlatformTable::operator=(PlatformTable other) noexcept {
    std::swap(mFirst, other.mFirst);
    std::swap(mMore, other.mMore);
    std::swap(mHasFirst, other.mHasFirst);
    return *this;
}

const EntryValue* PlatformTable::Find(int64_t platform) const {
    if (mHasFirst && mFirst.Platform == platform) return &mFirst.Value;
    const Item* item = mMore ? mMore->Find(platform) : nullptr;
    return item ? &item->Value : nullptr;
}

void PlatformTable::Set(int64_t platform, EntryValue value) {
    if (!mHasFirst || mFirst.Platform == platform) {
        mFirst = {platform, std::move(value)};
        mHasFirst = true;
        return;
    }
    if (!mMore) mMore = std::make_unique<Dictionary<int64_t, Item>>();
    mMore->Set(platform, {platform, std::move(value)});
}

}  // namespace sorbel
