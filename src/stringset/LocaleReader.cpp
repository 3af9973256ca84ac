#include "stringset/LocaleReader.h"

#include <algorithm>
#include <utility>

#include "stringset/LocaleFormat.h"

namespace sorbel {

using namespace LocaleFormat;

LocaleReader::LocaleReader(LocalizedStringSet& set, std::shared_ptr<const ByteBuffer> file)
    : mSet(set), mFile(std::move(file)), mOverrunLeft(LenB(mFile->View())) {}

bool LocaleReader::ReadData() {
    if (!mFile->View().starts_with(Magic)) return false;
    mSet.KeepBuffer(mFile);
    Enter(mSet, nullptr, mFile->View());
    for (;;) {
        const auto history = ReadUntilHistory(mFrames.top());
        if (mOverrunLeft < 0)
            return mSet.mIsValid = false;  // whichever version spent it, and whatever follows
        if (history)
            EnterHistory(*history);
        else if (!Leave())
            return mSet.mIsValid;
    }
}

void LocaleReader::Enter(LocalizedStringSet& set, std::shared_ptr<LocalizedStringSet> element,
                         StringView bytes) {
    ReserveEntries(set, bytes);
    set.mIsValid = true;
    mFrames.push({set, std::move(element), BinaryStream(bytes)});
    mFrames.top().Stream.SetPosition(LenB(Magic));
}

// A payload that is no locale file is dropped without a word, and so is one that turns out to be invalid.
void LocaleReader::EnterHistory(StringView bytes) {
    if (!bytes.starts_with(Magic)) return;
    auto element = std::make_shared<LocalizedStringSet>();
    element->mBuffers = mSet.mBuffers;
    LocalizedStringSet& set = *element;
    Enter(set, std::move(element), bytes);
}

// Goes back to the file around the one that has ended; false if there is none.
bool LocaleReader::Leave() {
    const std::shared_ptr<LocalizedStringSet> element = std::move(mFrames.top().Element);
    mFrames.pop();
    if (mFrames.empty()) return false;
    if (element->mIsValid) mFrames.top().Set.History.push_back(element);
    return true;
}

// The bytes of the next earlier version, or nothing at the end. Ends, since each round moves ahead: it reads
// a header of 8 bytes, nothing is skipped backwards, and an entry ends where its length, not below 0, says.
// Whatever leads out of the file ends the read of this file.
std::optional<StringView> LocaleReader::ReadUntilHistory(Frame& frame) {
    BinaryStream& s = frame.Stream;
    try {
        while (!s.EndOfFile()) {
            const auto [tag, length] = s.ReadInt32s<2>();
            if (tag != EntryTag)
                StoreWaiting(frame, 0);  // this chunk's failure may be the end of all reading
            if (tag == HistoryTag) return ReadSimpleValue(frame).Bytes();
            ReadChunk(frame, tag, length);
        }
    } catch (const OutOfBoundsException&) {
        frame.Set.mIsValid = false;
    }
    StoreWaiting(frame, 0);
    return std::nullopt;
}

void LocaleReader::ReadChunk(Frame& frame, int32_t tag, int32_t length) {
    LocalizedStringSet& set = frame.Set;
    switch (tag) {
        case EntryTag:
            ReadEntry(frame, length);
            break;
        case VersionTag:
            set.FileVersion = ReadSimpleValue(frame).AsInteger();
            break;
        case NorvaneVersionTag:
            set.NorvaneVersion = ReadSimpleValue(frame).AsText().View();
            break;
        case LanguageTag:
            set.Language = ReadSimpleValue(frame).AsText().View();
            break;
        case ApplicationTag:
            ReadApplication(set, ReadSimpleValue(frame).AsText());
            break;
        case DateTag:
            ReadDate(set, ReadSimpleValue(frame).AsText());
            break;
        default:
            set.mIsValid = false;
            Skip(frame.Stream, length);
    }
}

// A field is read whole even where it runs past the end of the entry, and the next chunk is read from that
// end all the same: one wrong length inside an entry does not derail the rest of the file.
void LocaleReader::ReadEntry(Frame& frame, int64_t length) {
    BinaryStream& s = frame.Stream;
    const int64_t end = s.Position() + length;
    if (length < 0 || end > s.Length()) throw OutOfBoundsException("An entry does not lie within its file.");

    StoreWaiting(frame, MostWaiting - 1);
    Waiting& entry = mWaiting[mAwaited % MostWaiting];
    entry = {};
    while (s.Position() < end) {
        const auto [tag, fieldLength] = s.ReadInt32s<2>();
        switch (tag) {
            case IdentifierTag:
                entry.Identifier = ReadSimpleValue(frame).AsText();
                break;
            case OriginalTag:
                entry.Original = ReadSimpleValue(frame).AsText();
                break;
            case LocalizedTag:
                entry.Localized = ReadSimpleValue(frame).AsText();
                break;
            case PlatformTag:
                entry.Platform = ReadSimpleValue(frame).AsInteger();
                break;
            case ChangedTag:
                ReadSimpleValue(frame);  // that a translator has to look at it: nothing here asks
                break;
            default:
                frame.Set.mIsValid = false;
                Skip(s, fieldLength);
        }
    }
    SpendOverrun(s.Position() - end);
    s.SetPosition(end);
    // It is stored when the place for it has come from the memory.
    entry.Hash = FoldedHash(entry.Identifier);
    frame.Set.Entries.Prefetch(entry.Hash);
    ++mAwaited;
}

void LocaleReader::StoreWaiting(Frame& frame, size_t mostLeft) {
    for (; mAwaited - mStored > mostLeft; ++mStored) {
        Waiting& entry = mWaiting[mStored % MostWaiting];
        frame.Set.Entries.FindOrAdd(entry.Identifier, entry.Hash, [&] { return entry.Identifier; })
            .Set(entry.Platform,
                 {.Localized = std::move(entry.Localized), .Original = std::move(entry.Original)});
    }
}

// Bytes behind an entry's end are read again as the next chunks. Were that free, a small file could make
// every entry hold all that follows it, and cost the square of its size.
void LocaleReader::SpendOverrun(int64_t bytes) {
    mOverrunLeft -= std::max<int64_t>(bytes, 0);
    if (mOverrunLeft < 0) throw OutOfBoundsException("The entries of the file lie one over the other.");
}

SimpleValue LocaleReader::ReadSimpleValue(Frame& frame) {
    BinaryStream& s = frame.Stream;
    const auto [type, length] = s.ReadInt32s<2>();
    if (type == StringType || type == DataType) return SimpleValue(s.Read(length));
    if (type == IntegerType) {
        const SimpleValue value(s.ReadInt32());
        if (length == 4) return value;
        frame.Set.mIsValid = false;
        if (length < 0) throw OutOfBoundsException("A value has a negative length.");
        s.SetPosition(s.Position() + length - 4);  // never behind the value's header, which was read before
        return value;
    }
    frame.Set.mIsValid = false;
    Skip(s, length);
    return {};
}

void LocaleReader::ReadDate(LocalizedStringSet& set, StringView text) {
    Date date = set.DateGenerated.value_or(Date());
    date.SetSQLDateTime(text);
    set.DateGenerated = date;
}

// Bytes from a system where they name no path are kept, so that a save here does not lose them.
void LocaleReader::ReadApplication(LocalizedStringSet& set, const SharedText& info) {
    set.EditedApplication = GetFolderItemFromSaveInfo(info);
    set.mForeignApplication.reset();
    if (!set.EditedApplication) set.mForeignApplication = info;
}

void LocaleReader::Skip(BinaryStream& s, int64_t length) {
    if (length < 0) throw OutOfBoundsException("A chunk has a negative length.");
    s.SetPosition(s.Position() + length);
}

}  // namespace sorbel
