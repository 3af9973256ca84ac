#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "journal/BeforeSave.h"
#include "journal/EditedRows.h"
#include "journal/FileState.h"
#include "journal/JournalFile.h"
#include "platform/FolderItem.h"
#include "stringset/ChangeLog.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// Keeps the changes of one document that its file does not have, so that they outlive the program. What is
/// told has been handed to the system when the call returns, and is on the disk within a second. Without a
/// state folder (SpecialFolder.h) it does nothing but save.
class Journal : public ChangeLog {
  public:
    /// Called when the state folder cannot be used, with the system's reason.
    using Failed = std::function<void(const String& reason)>;

    /// Begins with the document as it was read from these bytes of the file.
    Journal(std::shared_ptr<LocalizedStringSet> document, std::shared_ptr<FolderItem> file, StringView bytes,
            Failed failed);
    /// Leaves what is unsaved for the next opening.
    ~Journal() override;
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    void StoringEntry(const SharedText& identifier, int64_t platform, const EntryValue* before,
                      const EntryValue& after) override;
    void RunBatch(uint64_t& number, const std::vector<std::shared_ptr<LocalizedStringSet>>& versions,
                  const std::function<void()>& run) override;
    /// What is no entry may have changed: the language, the application, the versions.
    void NoteRest();

    /// Overwrites the document's file with these bytes, all or nothing: an interrupted save is completed at
    /// the next opening. Fails with IOException, and the file is what it was.
    void Save(StringView bytes);
    /// The file that it begins with.
    [[nodiscard]] const FileState& Base() const { return mBase; }
    /// Puts all that was told on the disk. False: some of it could not be written.
    [[nodiscard]] bool FlushNow();
    /// The changes are given up.
    void Discard() { Forget(); }

  private:
    /// What a document has besides its entries.
    struct Rest {
        String Language;
        std::shared_ptr<FolderItem> Application;
        std::vector<std::shared_ptr<LocalizedStringSet>> Versions;
    };
    [[nodiscard]] bool IsPresent(const Rest& rest) const;

    void Append(RecordType type, StringView payload);
    void AppendBase();
    void AppendBatchEntries();
    void RunFirst(uint64_t& number, const std::vector<std::shared_ptr<LocalizedStringSet>>& versions,
                  const std::function<void()>& run);
    void RunAgain(uint64_t number, const std::function<void()>& run);
    void BeginBatch(const std::vector<std::shared_ptr<LocalizedStringSet>>& versions);
    void EndBatch(uint64_t& number);
    void NoteApplication();
    void NoteVersions();
    [[nodiscard]] uint64_t NumberOfVersion(const std::shared_ptr<LocalizedStringSet>& version);
    [[nodiscard]] bool NothingIsLeft() const;
    void Settle();
    void Forget();
    void BeginAt(const FileState& base);
    [[nodiscard]] std::optional<BeforeSave> ReadBefore(StringView after) const;
    bool PrepareSave(const BeforeSave& before, StringView after, const FileState& state);
    [[nodiscard]] bool PutBack(const BeforeSave& before) const;

    std::shared_ptr<LocalizedStringSet> mDocument;
    std::shared_ptr<FolderItem> mFile;
    Failed mFailed;
    JournalFile mJournal;
    FileState mBase;
    Rest mBaseRest, mToldRest;
    EditedRows mRows;

    enum class Mode { Single, Batch, Again };  // what goes on
    Mode mMode = Mode::Single;
    RecordWriter mRecord;           // entries that are being put together
    std::vector<bool> mBatchesRun;  // of the batches told: whether each is in the document
    uint64_t mBatchesForgotten = 0;
    bool mBatchTraceless = true;  // taken back, the present batch leaves nothing behind
    bool mLeavesTraces = false;
    std::unordered_map<const LocalizedStringSet*, uint64_t> mVersionNumbers;
    std::vector<std::shared_ptr<LocalizedStringSet>> mNumberedVersions;  // keeps those alive
};

}  // namespace sorbel
