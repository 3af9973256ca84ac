#pragma once

#include <cstdint>
#include <vector>

#include "stringset/LocalizedStringSet.h"

namespace sorbel {

// Each appends one whole chunk and returns the number of bytes written, header included. Internal to this
// folder.
int64_t WriteTaggedInteger(String& out, int32_t tag, int64_t value);  ///< narrowed to 32 bits
int64_t WriteTaggedBoolean(String& out, int32_t tag, bool value);
int64_t WriteTaggedString(String& out, int32_t tag, StringView value);
int64_t WriteTaggedData(String& out, int32_t tag, StringView value);

/// Writes a set and the earlier versions nested in it as a locale file. Internal to this folder.
class LocaleWriter {
  public:
    /// The bytes of the file.
    [[nodiscard]] String WriteData(const LocalizedStringSet& set);

  private:
    // A set that is being written: the outermost one, or an earlier version inside the one below it.
    struct Frame {
        const LocalizedStringSet& Set;
        size_t Chunk;  // where the chunk that holds the version begins
        size_t NextVersion = 0;
    };

    void Enter(const LocalizedStringSet& set);
    void Leave();
    void WriteHead(const LocalizedStringSet& set);
    void WriteEntries(const LocalizedStringSet& set);
    void WriteEntry(StringView identifier, const PlatformTable::Item& item);

    String mOut;
    std::vector<Frame> mFrames;  // instead of the call stack, since versions may be nested deep
};

}  // namespace sorbel
