#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Date.h"
#include "platform/Dictionary.h"
#include "platform/FileContents.h"
#include "platform/FolderItem.h"
#include "platform/SharedText.h"
#include "platform/TextStreams.h"
#include "stringset/ChangeLog.h"
#include "stringset/PlatformTable.h"

namespace sorbel {

using EntryDictionary = Dictionary<SharedText, PlatformTable>;

/// The document: the translation of one program's strings into one language, with earlier versions of itself.
/// Made with `std::make_shared`. Knows of no window.
class LocalizedStringSet {
  public:
    LocalizedStringSet() = default;
    ~LocalizedStringSet();
    LocalizedStringSet(const LocalizedStringSet&) = delete;
    LocalizedStringSet& operator=(const LocalizedStringSet&) = delete;

    // Declared in alphabetical order, as everywhere where fields are listed.
    std::optional<Date> DateGenerated{Date()};      ///< label of a version
    std::shared_ptr<FolderItem> EditedApplication;  ///< the application last exported into, or null
    EntryDictionary Entries;  ///< identifier to platform to values; the one source of truth
    int64_t FileVersion = 0;  ///< as read; never acted on, written as 0
    std::vector<std::shared_ptr<LocalizedStringSet>> History;
    String Language;        ///< language code
    String NorvaneVersion;  ///< carried along

    /// Puts one entry into `Entries`, replacing the values that the identifier has for that platform.
    void AddEntry(int64_t platform, StringView identifier, StringView originalValue,
                  StringView localizedValue);

    /// The same without copies, so texts that borrow must be this set's own. `place` is where the identifier
    /// stands in `Entries`, as far as the caller knows.
    void StoreEntry(int64_t platform, const SharedText& identifier, const SharedText& original,
                    const SharedText& localized, int64_t place = -1);

    /// Of the rows, each a string on one platform, those that are translated.
    struct Progress {
        int64_t Rows = 0, Translated = 0;
    };
    /// Counted once, and then kept in step by what stores entries.
    [[nodiscard]] Progress TranslationProgress() const;

    /// Who hears of each change before it is made, or null. It must outlive its time here.
    [[nodiscard]] ChangeLog* Log() const { return mLog; }
    void SetLog(ChangeLog* log) { mLog = log; }

    /// The bytes of the files that it was read from. Most texts lie in them, one after the other.
    [[nodiscard]] std::vector<StringView> FileBytes() const;

    /// A snapshot of the strings and their labels, without the history.
    [[nodiscard]] std::shared_ptr<LocalizedStringSet> Clone() const;
    /// Whether a clone of `other`, as it stands, would be the same as this set.
    [[nodiscard]] bool IsCloneOf(const LocalizedStringSet& other) const;

    /// Adds the contents of a file to this set. False: not a valid locale file; what could be read is in the
    /// set all the same. Tab-delimited text always gives false. A failure that is not of the file, such as a
    /// malformed date or a short line of text, passes on.
    bool ReadFile(const FolderItem& f);

    /// Fails as `ReadFile` does for a short line of a file of tab-delimited text, and keeps nothing of it.
    /// One that cannot be read is no failure.
    static void CheckTextFile(const FolderItem& f);

    /// What `ReadFile` does with a locale file, from its bytes. The set keeps them alive, for its texts lie
    /// in them.
    bool ReadBytes(const std::shared_ptr<const ByteBuffer>& file);

    /// Makes bytes the contents of a file, or fails with IOException.
    using ContentsWriter = std::function<void(const FolderItem& f, StringView bytes)>;
    /// Overwrites the file with this set in the locale file format. A failure to write is not reported.
    void WriteFile(const FolderItem& f, const ContentsWriter& write = WriteContents) const;

    /// The bytes that `WriteFile` writes.
    [[nodiscard]] String ToBytes() const;

  private:
    friend class LocaleReader;
    friend class LocaleWriter;

    bool ReadTextData(TextInputStream& s);
    void CountStored(const EntryValue* before, const EntryValue& after);
    void KeepBuffer(const std::shared_ptr<const ByteBuffer>& buffer);
    void ReleaseHistory();

    using BufferList = std::vector<std::shared_ptr<const ByteBuffer>>;

    ChangeLog* mLog = nullptr;
    mutable std::optional<Progress> mProgress;  // nothing until somebody asks
    bool mIsValid = false;
    std::optional<SharedText> mForeignApplication;  // application bytes that name no file here
    std::shared_ptr<const BufferList> mBuffers;     // what borrowed texts point into; shared with the history
};

}  // namespace sorbel
