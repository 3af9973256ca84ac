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
    // A file that is being read: the outermost one, or an earlier version inside the one below it.
    struct Frame {
        LocalizedStringSet& Set;
        std::shared_ptr<LocalizedStringSet> Element;  // holds the set of an earlier version
        BinaryStream Stream;
    };
    // An entry that has been read and is to be stored.
    struct Waiting {
        SharedText Identifier, Original, Localized;
        int64_t Platform = PlatformAny;
        uint32_t Hash = 0;  // of the identifier
    };

    void Enter(LocalizedStringSet& set, std::shared_ptr<LocalizedStringSet> element, StringView bytes);
    void EnterHistory(StringView bytes);
    bool Leave();
    std::optional<StringView> ReadUntilHistory(Frame& frame);
    void ReadChunk(Frame& frame, int32_t tag, int32_t length);
    void ReadEntry(Frame& frame, int64_t length);
    void SpendOverrun(int64_t bytes);

    void StoreWaiting(Frame& frame, size_t mostLeft);

    static SimpleValue ReadSimpleValue(Frame& frame);
    static void ReadDate(LocalizedStringSet& set, StringView text);
    static void ReadApplication(LocalizedStringSet& set, const SharedText& info);
    static void Skip(BinaryStream& s, int64_t length);
    static void ReserveEntries(LocalizedStringSet& set, StringView bytes);

    LocalizedStringSet& mSet;
    std::shared_ptr<const ByteBuffer> mFile;
    int64_t mOverrunLeft;
    // Storing lags behind by so many entries, while the memory that it needs is fetched. They are of the
    // innermost frame, each at its number % MostWaiting.
    static constexpr size_t MostWaiting = 8;
    std::array<Waiting, MostWaiting> mWaiting;
    size_t mAwaited = 0, mStored = 0;  // numbers of entries
    std::stack<Frame> mFrames;         // instead of the call stack, which 24 bytes a level would overflow
};

}  // namespace sorbel
