#pragma once

#include <cstdint>

#include "journal/Records.h"

namespace sorbel {

/// An entry that was set, as a record of entries holds it.
struct EntryRecord {
    int64_t Platform = 0;
    bool IsNew = false;           ///< the document had none for this platform
    bool ChangesDefault = false;  ///< else the default value stayed as it was, and is not told
    StringView Identifier, Default, Localized;

    void PutTo(RecordWriter& record) const;
    static EntryRecord TakeFrom(RecordReader& record);
};

}  // namespace sorbel
