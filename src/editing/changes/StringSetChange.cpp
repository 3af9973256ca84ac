#include "editing/changes/StringSetChange.h"

#include "notifications/Notifications.h"
#include "platform/Clock.h"

namespace sorbel {

namespace {

constexpr int64_t MergeTicks = 30;  // half a second

}  // namespace

StringSetChange::StringSetChange(std::shared_ptr<LocalizedStringSet> set, StringView identifier,
                                 int64_t platform, StringView newValue, StringView originalValue,
                                 int64_t place)
    : mNewValue(newValue),
      mPlace(set->Entries.PlaceOf(identifier, place)),
      mPlatform(platform),
      mSet(std::move(set)),
      mTime(Ticks()) {
    if (mPlace >= 0) ReadSet(mSet->Entries.ItemAt(mPlace));
    if (identifier != mIdentifier.View()) mIdentifier = SharedText(identifier);  // in the caller's spelling
    if (!originalValue.empty() && originalValue != mOriginalValue.View())
        mOriginalValue = SharedText(originalValue);
}

void StringSetChange::ReadSet(const EntryDictionary::Item& entry) {
    mIdentifier = entry.First;
    if (const EntryValue* value = entry.Second.Find(mPlatform)) {
        mOldValue = value->Localized;
        mOriginalValue = value->Original;
    } else if (const EntryValue* any = entry.Second.Find(PlatformAny)) {
        mOriginalValue = any->Original;  // but not its translation: this platform has none yet
    }
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

void StringSetChange::Store(const SharedText& value) {
    mSet->StoreEntry(mPlatform, mIdentifier, mOriginalValue, value, mPlace);
    Notifications::ValueChanged(mSet.get(), mIdentifier);
}

}  // namespace sorbel
