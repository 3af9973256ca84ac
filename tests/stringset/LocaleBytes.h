#pragma once

#include <cstring>
#include <memory>
#include <string>

#include "stringset/LocalizedStringSet.h"

// Locale files put together by hand, from what the format says.
namespace sorbel::testing {

inline const String Magic = "nvlocale";

inline String Int(int64_t value) {
    String bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

inline String Chunk(const String& tag, const String& payload) {
    return tag + Int(LenB(payload)) + payload;
}
inline String Text(const String& tag, const String& text) {
    return Chunk(tag, Chunk("strn", text));
}
inline String Data(const String& tag, const String& bytes) {
    return Chunk(tag, Chunk("bind", bytes));
}
inline String Long(const String& tag, int64_t value) {
    return Chunk(tag, Chunk("long", Int(value)));
}

inline String Entry(const String& identifier, const String& original, const String& localized,
                    int64_t platform = 0, const String& more = "") {
    return Chunk("enty", Text("idnt", identifier) + Text("oval", original) + Text("tval", localized) +
                             Long("plat", platform) + more);
}

inline std::shared_ptr<ByteBuffer> Buffer(StringView bytes) {
    auto buffer = std::make_shared<ByteBuffer>(bytes.size());
    std::memcpy(buffer->Data(), bytes.data(), bytes.size());
    return buffer;
}

struct ReadResult {
    std::shared_ptr<LocalizedStringSet> Set = std::make_shared<LocalizedStringSet>();
    bool Valid = false;
};

inline ReadResult Read(const String& bytes) {
    ReadResult result;
    result.Valid = result.Set->ReadBytes(Buffer(bytes));
    return result;
}

// "default|translated" of an entry, "-" if there is none.
inline String Values(const LocalizedStringSet& set, const String& identifier, int64_t platform = 0) {
    const PlatformTable* platforms = set.Entries.Find(identifier);
    const EntryValue* value = platforms ? platforms->Find(platform) : nullptr;
    return value ? String(value->Original) + "|" + String(value->Localized) : "-";
}

}  // namespace sorbel::testing
