#include "editing/changes/StringSetChange.h"

#include "platform/Clock.h"
#include "ui/Notifications.h"

namespace sorbel {

namespace {

constexpr int64_t MergeTicks = 30;  // half a second

}  // namespace

StringSetChange::StringSetChange(std::shared_ptr<LocalizedStringSet> set, StringView identifier,
                                 int64_t platform, StringView newValue, StringView originalValue)
    : mIdentifier(identifier),
      mNewValue(newValue),
      mPlatform(platform),
      mSet(std::move(set)),
      mTime(Ticks()) {
    if (const PlatformTable* platforms = mSet->Entries.Find(identifier)) {
        if (const EntryValue* value = platforms->Find(platform)) {
            mOldValue = value->Localized.View();
            mOriginalValue = value->Original.View();
        } else if (const EntryValue* any = platforms->Find(PlatformAny)) {
            mOriginalValue = any->Original.View();  // but not its translation: this platform has none yet
        }
    }
    if (!originalValue.empty()) mOriginalValue = originalValue;
}

bool StringSetChange::CombineWith(const Action& other) {
    const auto* newer = dynamic_cast<const StringSetChange*>(&other);
    if (!newer || !Equal(newer->mIdentifier, mIdentifier) || newer->mPlatform != mPlatform ||
        newer->mSet != mSet || newer->mTime - mTime >= MergeTicks)
        return false;
    mNewValue = newer->mNewValue;
    mTime = newer->mTime;  // the half second counts from the latest keystroke
    return true;
}

void StringSetChange::Execute() {
    Store(mNewValue);
}

// An entry that the change made stays behind, with an empty translation.
void StringSetChange::Unexecute() {
    Store(mOldValue);
}

void StringSetChange::Store(StringView value) {
    mSet->AddEntry(mPlatform, mIdentifier, mOriginalValue, value);
    Notifications::ValueChanged(mSet.get(), mIdentifier);
}

}  // namespace sorbel
