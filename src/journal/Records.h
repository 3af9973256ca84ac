#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include "platform/Exceptions.h"
#include "platform/Text.h"

// What a journal consists of: records in the order in which things happened, each with a checksum, so that a
// torn or damaged tail is known for one. Numbers have the machine's own byte order, for a journal stays on
// its machine.
namespace sorbel {

enum class RecordType : uint32_t {
    Base = 1,    ///< the document's file and its state; the first record
    Entries,     ///< entries set, one after the other
    BatchBegin,  ///< entries that follow up to the end belong together
    BatchEntries,
    BatchEnd,
    BatchTurned,  ///< a batch has been taken back or made again
    Language,
    Application,
    Version,   ///< an earlier version of the document, whole
    Versions,  ///< which versions the document has, in order
    Save,      ///< the file is about to be overwritten
};

/// Puts values one behind the other.
class RecordWriter {
  public:
    template <typename Number>
    void Put(Number value) {
        static_assert(std::is_trivially_copyable_v<Number>);
        mBytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    /// A text whose length the reader learns.
    void PutText(StringView text) {
        Put(static_cast<uint64_t>(text.size()));
        mBytes += text;
    }
    /// A text that is the rest of the record.
    void PutRest(StringView text) { mBytes += text; }

    [[nodiscard]] const String& Bytes() const { return mBytes; }
    void Clear() { mBytes.clear(); }

  private:
    String mBytes;
};

/// Takes values in the order in which they were put. Fails with OutOfBoundsException beyond the end.
class RecordReader {
  public:
    explicit RecordReader(StringView bytes) : mRest(bytes) {}

    template <typename Number>
    Number Take() {
        static_assert(std::is_trivially_copyable_v<Number>);
        Number value;
        std::memcpy(&value, TakeBytes(sizeof value).data(), sizeof value);
        return value;
    }
    StringView TakeText() { return TakeBytes(Take<uint64_t>()); }
    StringView TakeBytes(uint64_t count) {
        if (count > mRest.size()) throw OutOfBoundsException("A record of the journal is too short.");
        const StringView bytes = mRest.substr(0, static_cast<size_t>(count));
        mRest.remove_prefix(bytes.size());
        return bytes;
    }
    [[nodiscard]] StringView Rest() const { return mRest; }
    [[nodiscard]] bool AtEnd() const { return mRest.empty(); }

  private:
    StringView mRest;
};

/// A record that has been read. The bytes are the journal's own.
struct Record {
    RecordType Type;
    int64_t Time;  ///< local seconds, as the `Clock` counts them
    StringView Payload;
};

/// What stands before the payload: its size, the time, the type and a checksum of all of it. `more`: so many
/// bytes behind the payload belong to it, but have a checksum of their own in it. `generation` is the same in
/// all records of a journal, and another each time it begins anew.
[[nodiscard]] String RecordHeader(uint64_t generation, RecordType type, int64_t time, StringView payload,
                                  size_t more = 0);

/// The records up to the end or to the first that is damaged, or left over from before the journal began
/// anew.
[[nodiscard]] std::vector<Record> ReadRecords(StringView journal);

}  // namespace sorbel
