#include "PlainDocument.h"

#include <algorithm>
#include <utility>

namespace sorbel::fuzz {

const PlainDocument::Value* PlainDocument::Entry::Find(int64_t platform) const {
    const auto found = std::ranges::find(Values, platform, &Value::Platform);
    return found == Values.end() ? nullptr : &*found;
}

PlainDocument::Value* PlainDocument::Entry::Find(int64_t platform) {
    return const_cast<Value*>(std::as_const(*this).Find(platform));
}

PlainDocument::PlainDocument(const LocalizedStringSet& set) {
    for (const auto& [identifier, platforms] : set.Entries) {
        Entry& entry = Entries.emplace_back();
        entry.Identifier = identifier.View();
        for (int64_t i = 0; i < platforms.Count(); ++i) {
            const PlatformTable::Item& item = platforms.ItemAt(i);
            entry.Values.push_back(
                {item.Platform, String(item.Value.Original), String(item.Value.Localized)});
        }
    }
}

const PlainDocument::Entry* PlainDocument::Find(StringView identifier) const {
    const auto found = std::ranges::find_if(
        Entries, [&](const Entry& entry) { return Equal(entry.Identifier, identifier); });
    return found == Entries.end() ? nullptr : &*found;
}

PlainDocument::Entry* PlainDocument::Find(StringView identifier) {
    return const_cast<Entry*>(std::as_const(*this).Find(identifier));
}

void PlainDocument::Store(StringView identifier, const Value& value) {
    Entry* entry = Find(identifier);
    if (!entry) entry = &Entries.emplace_back(Entry{String(identifier), {}});
    if (Value* const own = entry->Find(value.Platform))
        *own = value;
    else
        entry->Values.push_back(value);
}

PlainChange::PlainChange(const PlainDocument& document, StringView identifier, int64_t platform,
                         StringView newValue, StringView defaultValue)
    : Identifier(identifier), Platform(platform), New(newValue) {
    const PlainDocument::Entry* const entry = document.Find(identifier);
    const PlainDocument::Value* const own = entry ? entry->Find(platform) : nullptr;
    const PlainDocument::Value* const any = entry ? entry->Find(PlatformAny) : nullptr;
    if (own) Old = own->Translated;
    if (own || any) Default = own ? own->Default : any->Default;
    if (!defaultValue.empty()) Default = defaultValue;
}

std::vector<PlainChange> PlainMerge(const PlainDocument& document, const PlainDocument& imported) {
    std::vector<PlainChange> changes;
    for (const PlainDocument::Entry& entry : imported.Entries) {
        if (!document.Find(entry.Identifier)) continue;
        for (const PlainDocument::Value& value : entry.Values)
            changes.emplace_back(document, entry.Identifier, value.Platform, value.Translated, value.Default);
    }
    return changes;
}

std::shared_ptr<const ByteBuffer> Buffer(StringView bytes) {
    auto buffer = std::make_shared<ByteBuffer>(bytes.size());
    std::ranges::copy(bytes, buffer->Data());
    return buffer;
}

std::shared_ptr<LocalizedStringSet> ReadDocument(StringView bytes) {
    auto set = std::make_shared<LocalizedStringSet>();
    try {
        set->ReadBytes(Buffer(bytes));
    } catch (const UnsupportedFormatException&) {  // of a date, the one failure that the reader passes on
        return nullptr;
    }
    return set;
}

}  // namespace sorbel::fuzz
