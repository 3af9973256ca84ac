#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <stack>

#include "platform/BinaryStream.h"
#include "stringset/LocalizedStringSet.h"
#include "stringset/SimpleValue.h"

namespace sorbel {

/// Reads one locale file in memory, and the earlier versions nested in it, into a set. Any bytes may be read:
/// time and memory stay within a small multiple of their number. Internal to this folder.
class LocaleReader {
  public:
    LocaleReader(LocalizedStringSet& set, std::shared_ptr<const ByteBuffer> file);

    /// Whether the file is valid. Bytes that do not begin as a locale file leave the set as it was.
    bool ReadData();

  private:
    // By so many entries the storing lags behind, while the memory that it needs is fetched.
    static constexpr size_t MostWaiting = 8;

    // A file that is being read: the outermost one, or an earlier version inside the one below it.
    struct Frame {
        LocalizedStringSet& Set;
        std::shared_ptr<LocalizedStringSet> Element;  // holds the set of an earlier version
        BinaryStream Stream;
        size_t Stored;  // rows of the staging lists that are in `Entries`; the others wait
        std::array<uint32_t, MostWaiting> Hashes{};  // of those rows, each at row % MostWaiting
    };

    void Enter(LocalizedStringSet& set, std::shared_ptr<LocalizedStringSet> element, StringView bytes);
    void EnterHistory(StringView bytes);
    bool Leave();
    std::optional<StringView> ReadUntilHistory(Frame& frame);
    void ReadChunk(Frame& frame, int32_t tag, int32_t length);
    void ReadEntry(Frame& frame, int64_t length);
    void SpendOverrun(int64_t bytes);

    static void AwaitStoring(Frame& frame);
    static void StoreWaiting(Frame& frame, size_t mostLeft);

    static SimpleValue ReadSimpleValue(Frame& frame);
    static void ReadDate(LocalizedStringSet& set, StringView text);
    static void ReadApplication(LocalizedStringSet& set, const SharedText& info);
    static void Skip(BinaryStream& s, int64_t length);
    static void ReserveEntries(LocalizedStringSet& set, StringView bytes);

    LocalizedStringSet& mSet;
    std::shared_ptr<const ByteBuffer> mFile;
    int64_t mOverrunLeft;
    std::stack<Frame> mFrames;  // instead of the call stack, which 24 bytes a level would overflow
};

}  // namespace sorbel
