#include "editing/rules/Matching.h"

namespace sorbel {

bool IsUntranslated(const PlatformTable& entry) {
    for (int64_t index = 0; index < entry.Count(); ++index) {
        const PlatformTable::Item& item = entry.ItemAt(index);
        const bool known = item.Platform >= PlatformAny && item.Platform <= PlatformLinux;
        if (known && !item.Value.IsTranslated()) return true;
    }
    return false;
}

}  // namespace sorbel
