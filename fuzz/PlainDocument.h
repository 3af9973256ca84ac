#pragma once

#include <memory>
#include <vector>

#include "stringset/LocalizedStringSet.h"

namespace sorbel::fuzz {

/// A document the plain way: lists that are searched from their heads, texts of their own. What the program's
/// document is compared with.
struct PlainDocument {
    struct Value {
        int64_t Platform = PlatformAny;
        String Default, Translated;
        bool operator==(const Value&) const = default;
    };
    struct Entry {
        String Identifier;
        std::vector<Value> Values;

        [[nodiscard]] const Value* Find(int64_t platform) const;
        [[nodiscard]] Value* Find(int64_t platform);
        bool operator==(const Entry&) const = default;
    };

    PlainDocument() = default;
    explicit PlainDocument(const LocalizedStringSet& set);

    std::vector<Entry> Entries;

    [[nodiscard]] const Entry* Find(StringView identifier) const;
    [[nodiscard]] Entry* Find(StringView identifier);
    /// An identifier and a platform that are there keep their places and spellings.
    void Store(StringView identifier, const Value& value);

    bool operator==(const PlainDocument&) const = default;
};

/// A change of one translation as the undo engine keeps it. The default value is the document's own, or that
/// of its Any platform, unless one came with the change.
struct PlainChange {
    String Identifier;
    int64_t Platform = PlatformAny;
    String Default, Old, New;

    PlainChange(const PlainDocument& document, StringView identifier, int64_t platform, StringView newValue,
                StringView defaultValue = {});
    void Perform(PlainDocument& document) const { document.Store(Identifier, {Platform, Default, New}); }
    void Undo(PlainDocument& document) const { document.Store(Identifier, {Platform, Default, Old}); }
};

/// The changes that an import makes, by its rules: no new strings, the imported value always wins.
[[nodiscard]] std::vector<PlainChange> PlainMerge(const PlainDocument& document,
                                                  const PlainDocument& imported);

[[nodiscard]] std::shared_ptr<const ByteBuffer> Buffer(StringView bytes);

/// A document from the bytes of a locale file, valid or not; null if they make the reader fail.
[[nodiscard]] std::shared_ptr<LocalizedStringSet> ReadDocument(StringView bytes);

}  // namespace sorbel::fuzz
