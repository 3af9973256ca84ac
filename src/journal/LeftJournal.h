#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "journal/FileState.h"
#include "journal/JournalFile.h"
#include "journal/RestoreChange.h"
#include "platform/Date.h"
#include "platform/FolderItem.h"

namespace sorbel {

/// A journal that somebody left behind: no living program has it, and while this exists none will.
class LeftJournal {
  public:
    /// Those of a file, the oldest first. Links to the same file count as the file.
    [[nodiscard]] static std::vector<LeftJournal> Of(const FolderItem& file);
    [[nodiscard]] static std::vector<LeftJournal> All();

    /// The document's file, as it was opened.
    [[nodiscard]] const FolderItem& File() const { return mFile; }
    void Remove();

    /// How an interrupted save has left the file: true if it has to be completed. Does so with
    /// `CompleteSave`, which fails with IOException.
    [[nodiscard]] bool HasHalfWritten(StringView file) const;
    void CompleteSave() const;

    /// What the journal has that a document lacks.
    struct Unsaved {
        int64_t Rows = 0;             ///< whose texts differ
        Date Last;                    ///< change of them
        bool FileHasChanged = false;  ///< by others, since then
        std::unique_ptr<RestoreChange> Change;
        String Language;
        std::shared_ptr<FolderItem> Application;
    };
    /// Nothing if there is nothing. `state` is that of the document's file.
    [[nodiscard]] std::optional<Unsaved> Compare(const std::shared_ptr<LocalizedStringSet>& document,
                                                 const FileState& state) const;
    /// When it was written to last, in local seconds.
    [[nodiscard]] int64_t LastWrite() const;

  private:
    LeftJournal(std::unique_ptr<JournalFile> journal, FolderItem file, const FileState& base)
        : mJournal(std::move(journal)), mFile(std::move(file)), mBase(base) {}
    static std::optional<LeftJournal> Open(const String& path);
    void Read() const;
    [[nodiscard]] std::optional<int64_t> LastChange() const;
    [[nodiscard]] StringView LastSave() const;
    [[nodiscard]] bool IsOurs(const FileState& state) const;
    [[nodiscard]] bool IsAllSaved(const FileState& state) const;

    std::unique_ptr<JournalFile> mJournal;
    FolderItem mFile;
    FileState mBase;
    mutable std::shared_ptr<const ByteBuffer> mBytes;  // read when they are needed
    mutable std::vector<Record> mRecords;
    mutable bool mIsUnreadable = false;
};

/// Completes a save of the file that was interrupted. True: it was.
[[nodiscard]] bool CompleteInterruptedSave(const FolderItem& file);

/// The files, each once, that have changes in journals left behind.
[[nodiscard]] std::vector<std::shared_ptr<FolderItem>> FilesWithUnsavedChanges();

/// Removes journals that nobody will ask for: empty, or older than 90 days and of a file that no longer
/// exists.
void RemoveForgottenJournals();

}  // namespace sorbel
