#include "journal/LeftJournal.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "editing/changes/StringSetChange.h"
#include "journal/Replay.h"
#include "journal/SaveRecord.h"
#include "journal/StateFolder.h"
#include "platform/Clock.h"

namespace sorbel {

namespace {

bool IsSameFile(const FolderItem& one, const FolderItem& other) {
    if (one == other) return true;
    std::error_code ignored;
    return std::filesystem::equivalent(one.NativePath(), other.NativePath(), ignored);
}

bool IsChange(const Record& record) {
    return record.Type != RecordType::Base && record.Type != RecordType::Save;
}

const EntryValue* Find(const LocalizedStringSet& set, const Replay::Row& row) {
    const PlatformTable* values = set.Entries.Find(row.Identifier);
    return values ? values->Find(row.Platform) : nullptr;
}

bool SameTexts(const EntryValue& one, const EntryValue& other) {
    return one.Localized.View() == other.Localized.View() && one.Original.View() == other.Original.View();
}

std::vector<std::unique_ptr<Action>> ChangesOf(const Replay& replay,
                                               const std::shared_ptr<LocalizedStringSet>& document) {
    std::vector<std::unique_ptr<Action>> changes;
    for (const Replay::Row& row : replay.Rows()) {
        const EntryValue* const after = Find(replay.Result(), row);
        const EntryValue* const present = Find(*document, row);
        if (!after || (present && SameTexts(*after, *present))) continue;
        changes.push_back(std::make_unique<StringSetChange>(document, row.Identifier, row.Platform,
                                                            after->Localized, after->Original));
    }
    return changes;
}

}  // namespace

// --- Finding them ---

std::optional<LeftJournal> LeftJournal::Open(const String& path) try {
    std::unique_ptr<JournalFile> journal = JournalFile::OpenLeftBehind(path);
    if (!journal) return std::nullopt;
    const String head = journal->ReadHead();
    const std::vector<Record> records = ReadRecords(head);
    if (records.empty() || records.front().Type != RecordType::Base) return std::nullopt;
    RecordReader base(records.front().Payload);
    const auto state = base.Take<FileState>();
    base.Take<uint64_t>();
    return LeftJournal(std::move(journal), FolderItem(base.Rest()), state);
} catch (const OutOfBoundsException&) {
    return std::nullopt;
}

std::vector<LeftJournal> LeftJournal::All() {
    std::vector<LeftJournal> journals;
    for (const String& path : StateFolder::JournalPaths())
        if (std::optional<LeftJournal> journal = Open(path)) journals.push_back(std::move(*journal));
    return journals;
}

std::vector<LeftJournal> LeftJournal::Of(const FolderItem& file) {
    std::vector<LeftJournal> journals = All();
    std::erase_if(journals, [&](const LeftJournal& journal) { return !IsSameFile(journal.File(), file); });
    return journals;
}

/// A journal that cannot be read is one without records, but stays: the next time it may be possible.
void LeftJournal::Read() const {
    if (mBytes) return;
    try {
        mBytes = mJournal->Read();
    } catch (const IOException&) {
        mBytes = std::make_shared<const ByteBuffer>(0);
        mIsUnreadable = true;
    }
    mRecords = ReadRecords(mBytes->View());
}

void LeftJournal::Remove() {
    if (!mIsUnreadable) mJournal->Remove();
}

std::optional<int64_t> LeftJournal::LastChange() const {
    Read();
    const auto last = std::find_if(mRecords.rbegin(), mRecords.rend(), IsChange);
    return last == mRecords.rend() ? std::nullopt : std::optional(last->Time);
}

int64_t LeftJournal::LastWrite() const {
    Read();
    return mRecords.empty() ? 0 : mRecords.back().Time;
}

// --- Interrupted saves ---

StringView LeftJournal::LastSave() const {
    Read();
    const auto last = std::find_if(mRecords.rbegin(), mRecords.rend(),
                                   [](const Record& record) { return record.Type == RecordType::Save; });
    return last == mRecords.rend() ? StringView() : last->Payload;
}

bool LeftJournal::HasHalfWritten(StringView file) const try {
    const StringView save = LastSave();
    return !save.empty() && SaveRecord(save).Compare(file) == SaveRecord::Found::HalfWritten;
} catch (const OutOfBoundsException&) {
    return false;
}

void LeftJournal::CompleteSave() const {
    WriteContents(mFile, SaveRecord(LastSave()).After(ReadContents(mFile)->View()));
}

bool LeftJournal::IsOurs(const FileState& state) const try {
    return state == mBase || std::ranges::any_of(mRecords, [&](const Record& record) {
               return record.Type == RecordType::Save && SaveRecord(record.Payload).StateAfter() == state;
           });
} catch (const OutOfBoundsException&) {
    return false;
}

/// The file is what a save made of it that came after all changes.
bool LeftJournal::IsAllSaved(const FileState& state) const try {
    const Record& last = mRecords.back();
    return last.Type == RecordType::Save && SaveRecord(last.Payload).StateAfter() == state;
} catch (const OutOfBoundsException&) {
    return false;
}

// --- What is unsaved ---

std::optional<LeftJournal::Unsaved> LeftJournal::Compare(const std::shared_ptr<LocalizedStringSet>& document,
                                                         const FileState& state) const {
    const std::optional<int64_t> last = LastChange();
    if (!last || IsAllSaved(state)) return std::nullopt;
    Replay replay(*document, state == mBase);
    replay.Run(mRecords);
    Unsaved unsaved;
    unsaved.Last = Date::FromLocalSeconds(*last);
    unsaved.FileHasChanged = !IsOurs(state);
    unsaved.Language = replay.Result().Language;
    unsaved.Application = replay.Result().EditedApplication;
    unsaved.Change = std::make_unique<RestoreChange>();
    unsaved.Change->Document = document;
    unsaved.Change->Changes = ChangesOf(replay, document);
    unsaved.Change->Versions = replay.Result().History;
    unsaved.Rows = static_cast<int64_t>(unsaved.Change->Changes.size());
    const bool sameApplication = unsaved.Application == document->EditedApplication ||
                                 (unsaved.Application && document->EditedApplication &&
                                  *unsaved.Application == *document->EditedApplication);
    if (unsaved.Rows == 0 && sameApplication && unsaved.Language == document->Language &&
        unsaved.Change->Versions == document->History)
        return std::nullopt;
    return unsaved;
}

// --- All of them ---

bool CompleteInterruptedSave(const FolderItem& file) try {
    const std::vector<LeftJournal> journals = LeftJournal::Of(file);
    if (journals.empty()) return false;
    const std::shared_ptr<const ByteBuffer> bytes = ReadContents(file);
    const auto found = std::ranges::find_if(
        journals, [&](const LeftJournal& journal) { return journal.HasHalfWritten(bytes->View()); });
    if (found == journals.end()) return false;
    found->CompleteSave();
    return true;
} catch (const IOException&) {
    return false;  // reading the file will tell
}

namespace {

bool HasUnsaved(const LeftJournal& journal) try {
    const std::shared_ptr<const ByteBuffer> bytes = ReadContents(journal.File());
    if (journal.HasHalfWritten(bytes->View())) return true;
    const auto document = std::make_shared<LocalizedStringSet>();
    return document->ReadBytes(bytes) && journal.Compare(document, FileState::Of(bytes->View()));
} catch (const RuntimeException&) {
    return false;  // it could not be opened
}

}  // namespace

std::vector<std::shared_ptr<FolderItem>> FilesWithUnsavedChanges() {
    std::vector<std::shared_ptr<FolderItem>> files;
    for (const LeftJournal& journal : LeftJournal::All()) {
        const bool isKnown =
            std::ranges::any_of(files, [&](const auto& file) { return IsSameFile(*file, journal.File()); });
        if (!isKnown && HasUnsaved(journal)) files.push_back(std::make_shared<FolderItem>(journal.File()));
    }
    return files;
}

void RemoveForgottenJournals() {
    constexpr int64_t Kept = int64_t{90} * 24 * 60 * 60;
    for (const String& path : StateFolder::JournalPaths()) {
        const std::unique_ptr<JournalFile> journal = JournalFile::OpenLeftBehind(path);
        if (journal && journal->IsEmpty()) journal->Remove();
    }
    for (LeftJournal& journal : LeftJournal::All())
        if (!journal.File().Exists() && Clock::Current().LocalSeconds() - journal.LastWrite() > Kept)
            journal.Remove();
}

}  // namespace sorbel
