#include "journal/EntryRecord.h"

namespace sorbel {

namespace {

enum Flag : uint8_t { New = 1, HasDefault = 2 };

}  // namespace

void EntryRecord::PutTo(RecordWriter& record) const {
    record.Put(static_cast<uint8_t>((IsNew ? New : 0) | (ChangesDefault ? HasDefault : 0)));
    record.Put(Platform);
    record.PutText(Identifier);
    record.PutText(Localized);
    if (ChangesDefault) record.PutText(Default);
}

EntryRecord EntryRecord::TakeFrom(RecordReader& record) {
    EntryRecord entry;
    const auto flags = record.Take<uint8_t>();
    entry.IsNew = (flags & New) != 0;
    entry.ChangesDefault = (flags & HasDefault) != 0;
    entry.Platform = record.Take<int64_t>();
    entry.Identifier = record.TakeText();
    entry.Localized = record.TakeText();
    if (entry.ChangesDefault) entry.Default = record.TakeText();
    return entry;
}

}  // namespace sorbel
