#include "interchange/ValueChoice.h"

namespace sorbel {

StringView ExportedValue(const PlatformTable& entry, int64_t platform) {
    const EntryValue* own = entry.Find(platform);
    if (own && !own->Localized.Empty()) return own->Localized;
    const EntryValue* any = entry.Find(PlatformAny);
    return any ? any->Localized.View() : StringView();
}

}  // namespace sorbel
