#include "stringset/LocalizedStringSet.h"

#include <algorithm>
#include <utility>

#include "shell/FileTypes1.h"
#include "stringset/LocaleReader.h"
#include "stringset/LocaleWriter.h"

namespace sorbel {

LocalizedStringSet::~LocalizedStringSet() {
    ReleaseHistory();
}

void LocalizedStringSet::AddEntry(int64_t platform, StringView identifier, StringView originalValue,
                                  StringView localizedValue) {
    StoreEntry(platform, SharedText(identifier), SharedText(originalValue), SharedText(localizedValue));
}

std::vector<StringView> LocalizedStringSet::FileBytes() const {
    std::vector<StringView> files;
    if (!mBuffers) return files;
    for (const auto& buffer : *mBuffers)
        files.push_back(buffer->View());
    return files;
}

// Texts are shared: copies count the owned ones, and the borrowed ones live as long as the buffers do.
std::shared_ptr<LocalizedStringSet> LocalizedStringSet::Clone() const {
    auto copy = std::make_shared<LocalizedStringSet>();
    copy->DateGenerated = DateGenerated;
    copy->EditedApplication = EditedApplication;
    copy->Entries = Entries;
    copy->FileVersion = FileVersion;
    copy->Language = Language;
    copy->NorvaneVersion = NorvaneVersion;
    copy->mForeignApplication = mForeignApplication;
    copy->mBuffers = mBuffers;
    return copy;
}

namespace {

bool IsSameText(const SharedText& one, const SharedText& other) {
    return (one.View().data() == other.View().data() && one.View().size() == other.View().size()) ||
           one.View() == other.View();
}

bool IsSameTable(const PlatformTable& one, const PlatformTable& other) {
    if (one.Count() != other.Count()) return false;
    for (int64_t index = 0; index < one.Count(); ++index) {
        const PlatformTable::Item &left = one.ItemAt(index), &right = other.ItemAt(index);
        if (left.Platform != right.Platform || !IsSameText(left.Value.Localized, right.Value.Localized) ||
            !IsSameText(left.Value.Original, right.Value.Original))
            return false;
    }
    return true;
}

bool IsSameFile(const std::shared_ptr<FolderItem>& one, const std::shared_ptr<FolderItem>& other) {
    return one == other || (one && other && *one == *other);
}

}  // namespace

bool LocalizedStringSet::IsCloneOf(const LocalizedStringSet& other) const {
    return History.empty() && DateGenerated == other.DateGenerated && Language == other.Language &&
           FileVersion == other.FileVersion && NorvaneVersion == other.NorvaneVersion &&
           IsSameFile(EditedApplication, other.EditedApplication) &&
           mForeignApplication.value_or(SharedText()).View() ==
               other.mForeignApplication.value_or(SharedText()).View() &&
           std::equal(Entries.begin(), Entries.end(), other.Entries.begin(), other.Entries.end(),
                      [](const auto& left, const auto& right) {
                          return IsSameText(left.First, right.First) &&
                                 IsSameTable(left.Second, right.Second);
                      });
}

bool LocalizedStringSet::ReadFile(const FolderItem& f) {
    try {
        if (f.Type() != FileTypes1::TabDelimited().Name) return ReadBytes(ReadContents(f));
        TextInputStream s = TextInputStream::Open(f);
        return ReadTextData(s);
    } catch (const IOException&) {
        return false;
    }
}

bool LocalizedStringSet::ReadBytes(const std::shared_ptr<const ByteBuffer>& file) {
    mProgress.reset();
    return LocaleReader(*this, file).ReadData();
}

void LocalizedStringSet::WriteFile(const FolderItem& f, const ContentsWriter& write) const {
    try {
        write(f, ToBytes());
    } catch (const IOException&) {  // a document that could not be saved is not reported
        return;
    }
}

String LocalizedStringSet::ToBytes() const {
    return LocaleWriter().WriteData(*this);
}

void LocalizedStringSet::StoreEntry(int64_t platform, const SharedText& identifier,
                                    const SharedText& original, const SharedText& localized, int64_t place) {
    const auto key = [&] {
        return identifier;
    };
    PlatformTable& values = Entries.FindOrAdd(identifier, key, place);
    EntryValue value{.Localized = localized, .Original = original};
    const EntryValue* const before = values.Find(platform);
    if (mLog) mLog->StoringEntry(identifier, platform, before, value);
    CountStored(before, value);
    values.Set(platform, std::move(value));
}

LocalizedStringSet::Progress LocalizedStringSet::TranslationProgress() const {
    if (mProgress) return *mProgress;
    Progress counted;
    for (const auto& [identifier, entry] : Entries) {
        counted.Rows += entry.Count();
        for (int64_t index = 0; index < entry.Count(); ++index)
            counted.Translated += entry.ItemAt(index).Value.IsTranslated() ? 1 : 0;
    }
    mProgress = counted;
    return counted;
}

void LocalizedStringSet::CountStored(const EntryValue* before, const EntryValue& after) {
    if (!mProgress) return;
    mProgress->Rows += before ? 0 : 1;
    mProgress->Translated += (after.IsTranslated() ? 1 : 0) - (before && before->IsTranslated() ? 1 : 0);
}

void LocalizedStringSet::KeepBuffer(const std::shared_ptr<const ByteBuffer>& buffer) {
    BufferList buffers = mBuffers ? *mBuffers : BufferList();
    buffers.push_back(buffer);
    mBuffers = std::make_shared<const BufferList>(std::move(buffers));
}

// A file may nest versions so deep that freeing them one inside the other would overflow the call stack.
void LocalizedStringSet::ReleaseHistory() {
    std::vector<std::shared_ptr<LocalizedStringSet>> doomed = std::move(History);
    while (!doomed.empty()) {
        const std::shared_ptr<LocalizedStringSet> set = std::move(doomed.back());
        doomed.pop_back();
        if (!set || set.use_count() > 1) continue;
        doomed.insert(doomed.end(), set->History.begin(), set->History.end());
        set->History.clear();
    }
}

}  // namespace sorbel
