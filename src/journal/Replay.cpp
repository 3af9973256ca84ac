#include "journal/Replay.h"

#include <algorithm>
#include <cstring>

#include "journal/FileState.h"

namespace sorbel {

Replay::Replay(const LocalizedStringSet& document, bool sameFile)
    : mDocument(document), mSameFile(sameFile), mResult(document.Clone()) {
    mResult->History = document.History;
}

void Replay::Run(const std::vector<Record>& records) {
    try {
        for (const Record& record : records)
            Run(record);
    } catch (const OutOfBoundsException&) {
        return;  // a damage that its checksum did not tell
    }
}

void Replay::Run(const Record& record) {
    const RecordReader reader(record.Payload);
    switch (record.Type) {
        case RecordType::Base:
            return TakeBase(reader);
        case RecordType::Entries:
            return SetEntries(reader, nullptr);
        case RecordType::BatchBegin:
            mBatches.emplace_back();
            if (record.Payload != StringView("\0", 1)) mVersions.push_back(mResult->Clone());
            return;
        case RecordType::BatchEntries:
            if (mBatches.empty()) throw OutOfBoundsException("No batch has begun.");
            return SetEntries(reader, &mBatches.back());
        case RecordType::BatchTurned:
            return Turn(RecordReader(reader).Take<uint64_t>());
        case RecordType::Language:
            mResult->Language = record.Payload;
            return;
        case RecordType::Application:
            mResult->EditedApplication = GetFolderItemFromSaveInfo(record.Payload);
            return;
        case RecordType::Version:
            return AddVersion(record.Payload);
        case RecordType::Versions:
            return TakeVersions(reader);
        case RecordType::BatchEnd:
        case RecordType::Save:
            return;
    }
}

void Replay::TakeBase(RecordReader record) {
    record.Take<FileState>();
    mBaseVersions = record.Take<uint64_t>();
}

// --- Entries ---

void Replay::SetEntries(RecordReader record, Batch* batch) {
    while (!record.AtEnd()) {
        Step step = Set(EntryRecord::TakeFrom(record));
        if (!batch) continue;
        const size_t first = batch->FirstOfRow.try_emplace(step.Row, batch->Steps.size()).first->second;
        if (first < batch->Steps.size()) step.Before = batch->Steps[first].Before;
        batch->Steps.push_back(std::move(step));
    }
}

/// A default value counts where the change was one of it. Where the document has got the entry in the
/// meantime, its own stands.
Replay::Step Replay::Set(const EntryRecord& entry) {
    const size_t row = IndexOfRow(entry.Identifier, entry.Platform);
    const PlatformTable* values = mResult->Entries.Find(entry.Identifier);
    const EntryValue* present = values ? values->Find(entry.Platform) : nullptr;
    const EntryValue* any = values ? values->Find(PlatformAny) : nullptr;
    SharedText original = present ? present->Original : any ? any->Original : SharedText();
    if (entry.ChangesDefault && !(entry.IsNew && present)) original = SharedText(entry.Default);
    Step step{row, present ? present->Localized : SharedText(), SharedText(entry.Localized), original,
              entry.ChangesDefault};
    mResult->StoreEntry(entry.Platform, mRows[row].Identifier, original, step.After);
    return step;
}

size_t Replay::IndexOfRow(StringView identifier, int64_t platform) {
    std::vector<size_t>& rows =
        mRowsByIdentifier.FindOrAdd(identifier, [&] { return SharedText(identifier); });
    for (const size_t row : rows)
        if (mRows[row].Platform == platform) return row;
    mRows.push_back({SharedText(identifier), platform});
    return rows.emplace_back(mRows.size() - 1);
}

void Replay::Turn(uint64_t index) {
    if (index >= mBatches.size()) throw OutOfBoundsException("There is no such batch.");
    Batch& batch = mBatches[static_cast<size_t>(index)];
    batch.IsRun = !batch.IsRun;
    for (const Step& step : batch.Steps)
        Put(step, batch.IsRun ? step.After : step.Before);
}

/// Both directions leave the default value that the batch carries. That of a file that others have changed
/// stands, unless the batch was one of default values.
void Replay::Put(const Step& step, const SharedText& localized) {
    const Row& row = mRows[step.Row];
    const PlatformTable* values = mResult->Entries.Find(row.Identifier);
    const EntryValue* present = values ? values->Find(row.Platform) : nullptr;
    const bool own = mSameFile || step.ChangesDefault || !present;
    const SharedText original = own ? step.Default : present->Original;
    mResult->StoreEntry(row.Platform, row.Identifier, original, localized);
}

// --- Versions ---

void Replay::AddVersion(StringView bytes) {
    auto buffer = std::make_shared<ByteBuffer>(bytes.size());
    if (!bytes.empty()) std::memcpy(buffer->Data(), bytes.data(), bytes.size());
    auto version = std::make_shared<LocalizedStringSet>();
    if (!version->ReadBytes(buffer)) throw OutOfBoundsException("A version cannot be read.");
    mVersions.push_back(std::move(version));
}

/// In a file that others have changed, a version that was taken away cannot be told from theirs, and stays.
void Replay::TakeVersions(RecordReader record) {
    std::vector<uint64_t> numbers;
    while (!record.AtEnd())
        numbers.push_back(record.Take<uint64_t>());
    mResult->History.clear();
    if (!mSameFile) mResult->History = mDocument.History;
    AddVersionsOf(numbers);
}

void Replay::AddVersionsOf(const std::vector<uint64_t>& numbers) {
    auto& history = mResult->History;
    for (const uint64_t number : numbers) {
        if (number < mBaseVersions) {
            if (mSameFile) history.push_back(mDocument.History.at(static_cast<size_t>(number)));
            continue;
        }
        if (number - mBaseVersions >= mVersions.size())
            throw OutOfBoundsException("There is no such version.");
        const auto& version = mVersions[static_cast<size_t>(number - mBaseVersions)];
        const bool isThere = !mSameFile && std::ranges::any_of(history, [&](const auto& other) {
            return version->IsCloneOf(*other);
        });
        if (!isThere) history.push_back(version);
    }
}

}  // namespace sorbel
