#include "journal/Journal.h"

#include <algorithm>
#include <utility>

#include "journal/DiskFlusher.h"
#include "journal/EntryRecord.h"
#include "journal/SaveRecord.h"
#include "platform/SpecialFolder.h"

namespace sorbel {

namespace {

constexpr size_t BatchChunk = size_t{1} << 20;

/// Back to what was, on every way out.
template <typename Value>
class Restored {
  public:
    Restored(Value& place, Value value) : mPlace(place), mBefore(std::exchange(place, value)) {}
    ~Restored() { mPlace = mBefore; }
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;

  private:
    Value& mPlace;
    Value mBefore;
};

}  // namespace

Journal::Journal(std::shared_ptr<LocalizedStringSet> document, std::shared_ptr<FolderItem> file,
                 StringView bytes, Failed failed)
    : mDocument(std::move(document)), mFile(std::move(file)), mFailed(std::move(failed)) {
    if (!SpecialFolder::State()) return;
    BeginAt(FileState::Of(bytes));
    mDocument->SetLog(this);
}

Journal::~Journal() {
    if (mDocument->Log() == this) mDocument->SetLog(nullptr);
    if (mJournal.IsEmpty() || NothingIsLeft()) mJournal.Remove();
}

/// From here on the file has all that the document has.
void Journal::BeginAt(const FileState& base) {
    mBase = base;
    mBaseRest = {mDocument->Language, mDocument->EditedApplication, mDocument->History};
    Forget();
}

void Journal::Forget() {
    mJournal.Empty();
    mToldRest = mBaseRest;
    mRows.Clear();
    mBatchesForgotten += mBatchesRun.size();
    mBatchesRun.clear();
    mLeavesTraces = false;
    mVersionNumbers.clear();
    mNumberedVersions.clear();
    for (const auto& version : mBaseRest.Versions)
        (void)NumberOfVersion(version);
}

// --- Entries ---

void Journal::StoringEntry(const SharedText& identifier, int64_t platform, const EntryValue* before,
                           const EntryValue& after) {
    if (mMode == Mode::Again) return;  // told when it ran first
    const bool changesDefault = !before || before->Original.View() != after.Original.View();
    EntryRecord{platform, !before, changesDefault, identifier, after.Original, after.Localized}.PutTo(
        mRecord);
    if (mMode == Mode::Batch) {
        mBatchTraceless = mBatchTraceless && !changesDefault;
        if (mRecord.Bytes().size() >= BatchChunk) AppendBatchEntries();
        return;
    }
    mRows.Set(identifier, platform, before, after);
    if (NothingIsLeft()) return Settle();
    Append(RecordType::Entries, mRecord.Bytes());
    mRecord.Clear();
}

void Journal::AppendBatchEntries() {
    if (!mRecord.Bytes().empty()) Append(RecordType::BatchEntries, mRecord.Bytes());
    mRecord.Clear();
}

// --- Batches ---

void Journal::RunBatch(uint64_t& number, const std::vector<std::shared_ptr<LocalizedStringSet>>& versions,
                       const std::function<void()>& run) {
    if (mMode != Mode::Single) return run();  // part of the batch around it
    NoteRest();
    if (number > mBatchesForgotten)
        RunAgain(number, run);
    else
        RunFirst(number, versions, run);
    NoteRest();
    Settle();
}

void Journal::RunFirst(uint64_t& number, const std::vector<std::shared_ptr<LocalizedStringSet>>& versions,
                       const std::function<void()>& run) {
    BeginBatch(versions);
    const Restored mode(mMode, Mode::Batch);
    try {
        run();
    } catch (...) {
        EndBatch(number);
        throw;
    }
    EndBatch(number);
}

void Journal::RunAgain(uint64_t number, const std::function<void()>& run) {
    const uint64_t index = number - mBatchesForgotten - 1;
    Append(RecordType::BatchTurned, {reinterpret_cast<const char*>(&index), sizeof index});
    mBatchesRun[index].flip();
    const Restored mode(mMode, Mode::Again);
    run();
}

/// Of a version that is the document as it now stands only that is told, since it comes out of the records
/// before. Checked, for nothing else in the program relies on it.
void Journal::BeginBatch(const std::vector<std::shared_ptr<LocalizedStringSet>>& versions) {
    mBatchTraceless = mRows.Empty();  // rows that are edited before and after are not followed through it
    uint8_t snapshots = 0;
    for (const auto& version : versions)
        if (snapshots == 0 && !mVersionNumbers.contains(version.get()) && version->IsCloneOf(*mDocument)) {
            (void)NumberOfVersion(version);
            ++snapshots;
        }
    Append(RecordType::BatchBegin, {reinterpret_cast<const char*>(&snapshots), sizeof snapshots});
}

void Journal::EndBatch(uint64_t& number) {
    AppendBatchEntries();
    Append(RecordType::BatchEnd, {});
    mBatchesRun.push_back(true);
    number = mBatchesForgotten + mBatchesRun.size();
    mLeavesTraces = mLeavesTraces || !mBatchTraceless;
}

// --- The rest of the document ---

bool Journal::IsPresent(const Rest& rest) const {
    const auto& application = mDocument->EditedApplication;
    const bool sameApplication = application == rest.Application ||
                                 (application && rest.Application && *application == *rest.Application);
    return sameApplication && mDocument->Language == rest.Language && mDocument->History == rest.Versions;
}

void Journal::NoteRest() {
    if (mDocument->Log() != this || IsPresent(mToldRest)) return;
    if (mDocument->Language != mToldRest.Language) Append(RecordType::Language, mDocument->Language);
    const auto& application = mDocument->EditedApplication;
    if (application && !(mToldRest.Application && *application == *mToldRest.Application))
        Append(RecordType::Application, application->GetSaveInfo());
    if (mDocument->History != mToldRest.Versions) NoteVersions();
    mToldRest = {mDocument->Language, application, mDocument->History};
}

void Journal::NoteVersions() {
    RecordWriter record;
    for (const auto& version : mDocument->History) {
        if (!mVersionNumbers.contains(version.get())) Append(RecordType::Version, version->ToBytes());
        record.Put(NumberOfVersion(version));
    }
    Append(RecordType::Versions, record.Bytes());
}

uint64_t Journal::NumberOfVersion(const std::shared_ptr<LocalizedStringSet>& version) {
    const auto [found, isNew] = mVersionNumbers.try_emplace(version.get(), mNumberedVersions.size());
    if (isNew) mNumberedVersions.push_back(version);
    return found->second;
}

// --- The file of it ---

void Journal::Append(RecordType type, StringView payload) {
    try {
        if (mJournal.IsEmpty()) AppendBase();
        mJournal.Append(type, payload);
    } catch (const IOException& failure) {
        mFailed(failure.Message());
    }
}

void Journal::AppendBase() {
    RecordWriter base;
    base.Put(mBase);
    base.Put(uint64_t{mBaseRest.Versions.size()});
    base.PutRest(mFile->NativePath());
    mJournal.Append(RecordType::Base, base.Bytes());
}

/// From now on the journal can complete the save. False: it cannot be written, so the save is not protected.
bool Journal::PrepareSave(const BeforeSave& before, StringView after, const FileState& state) {
    try {
        if (mJournal.IsEmpty()) AppendBase();
        mJournal.AppendNow(RecordType::Save, SaveRecord::Make(before, state), after.substr(before.Offset()));
        return true;
    } catch (const IOException& failure) {
        mFailed(failure.Message());
        return false;
    }
}

/// After a failed save, which may have come anywhere. False: this failed as well.
bool Journal::PutBack(const BeforeSave& before) const {
    try {
        const String bytes = before.Bytes();
        if (ReadContents(*mFile)->View() != bytes) WriteContents(*mFile, bytes);
        return true;
    } catch (const IOException&) {
        return false;
    }
}

/// Nothing if it cannot be read; the save itself will tell.
std::optional<BeforeSave> Journal::ReadBefore(StringView after) const {
    try {
        return BeforeSave(*mFile, after);
    } catch (const IOException&) {
        return std::nullopt;
    }
}

void Journal::Save(StringView bytes) {
    if (mDocument->Log() != this) return WriteContents(*mFile, bytes);
    const bool existed = mFile->Exists();
    const FileState state = FileState::Of(bytes);
    const std::optional<BeforeSave> before = ReadBefore(bytes);
    const bool prepared = before && PrepareSave(*before, bytes, state);
    try {
        WriteContents(*mFile, bytes);
    } catch (const IOException&) {
        const bool isAsBefore = !existed || (before && PutBack(*before));
        if (prepared && isAsBefore) mJournal.TakeBack();
        throw;
    }
    BeginAt(state);
}

bool Journal::FlushNow() {
    DiskFlusher::FlushAll();
    return mJournal.IsWritten();
}

bool Journal::NothingIsLeft() const {
    return !mRows.AnyDiffers() && !mLeavesTraces && std::ranges::count(mBatchesRun, true) == 0 &&
           IsPresent(mBaseRest);
}

void Journal::Settle() {
    mRecord.Clear();
    if (NothingIsLeft()) Forget();
}

}  // namespace sorbel
