#pragma once

#include <cstdint>
#include <memory>

#include "platform/Dictionary.h"
#include "platform/SharedText.h"
#include "platform/Text.h"

namespace sorbel {

/// Codes of the platforms that a string may have a value for. Files store the integer; other integers are
/// carried along.
inline constexpr int64_t PlatformAny = 0;
inline constexpr int64_t PlatformMacOS = 1;
inline constexpr int64_t PlatformWindows = 2;
inline constexpr int64_t PlatformLinux = 3;

/// "Any", "Mac OS", "Windows", "Linux"; empty for another code.
[[nodiscard]] StringView PlatformText(int64_t platform);
/// "OS-Mac", "OS-Windows", "OS-Linux"; empty for another code.
[[nodiscard]] StringView PlatformIconName(int64_t platform);

/// Keys of the two values of an entry. They run against the order in which a row shows the values.
enum ValueKey { ValueKeyLocalized = 1, ValueKeyOriginal = 2 };

/// What makes a row count as translated, for all that count, filter or mark rows.
[[nodiscard]] inline bool IsTranslation(StringView localized) {
    return !localized.empty();
}

/// The two values of a string on one platform.
struct EntryValue {
    SharedText Localized;
    SharedText Original;

    [[nodiscard]] StringView Value(ValueKey key) const {
        return key == ValueKeyLocalized ? Localized : Original;
    }
    [[nodiscard]] bool IsTranslated() const { return IsTranslation(Localized); }
};

/// The values of one string by platform, in the order in which the platforms were added. Nearly all strings
/// have one platform, so the first lies inline.
class PlatformTable {
  public:
    struct Item {
        int64_t Platform;
        EntryValue Value;
    };

    PlatformTable() = default;
    PlatformTable(const PlatformTable& other);
    PlatformTable(PlatformTable&&) noexcept = default;
    PlatformTable& operator=(PlatformTable other) noexcept;
    ~PlatformTable() = default;

    [[nodiscard]] int64_t Count() const { return (mHasFirst ? 1 : 0) + (mMore ? mMore->Count() : 0); }
    /// By place, from 0 to below `Count`.
    [[nodiscard]] const Item& ItemAt(int64_t index) const {
        return index == 0 ? mFirst : mMore->ValueAt(index - 1);
    }
    [[nodiscard]] bool HasKey(int64_t platform) const { return Find(platform) != nullptr; }
    /// The values for a platform, or null.
    [[nodiscard]] const EntryValue* Find(int64_t platform) const;
    /// Adds or replaces; a replaced platform keeps its place.
    void Set(int64_t platform, EntryValue value);

  private:
    Item mFirst{};
    std::unique_ptr<Dictionary<int64_t, Item>> mMore;  // looked up, since a file may give a string any number
    bool mHasFirst = false;
};

}  // namespace sorbel
