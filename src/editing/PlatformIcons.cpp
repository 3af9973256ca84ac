#include "editing/PlatformIcons.h"

#include <map>
#include <utility>

#include "stringset/PlatformTable.h"
#include "ui/Icons.h"

namespace sorbel {

std::shared_ptr<const Picture> PlatformIcon(int64_t platform, Color tint) {
    const StringView name = PlatformIconName(platform);
    if (name.empty()) return nullptr;
    static std::map<std::pair<int64_t, uint32_t>, std::shared_ptr<const Picture>> tinted;
    std::shared_ptr<const Picture>& icon = tinted[{platform, tint.Value}];
    if (icon) return icon;
    const std::shared_ptr<const Picture> source = Icons::GetIcon(name);
    // The Linux artwork carries its shape in its grey levels, the others in their transparency.
    icon = platform == PlatformLinux ? Icons::CreateImageFromColorWithTint(*source, tint, 1.0)
                                     : Icons::CreateImageFromMaskWithTint(*source, tint, 1.0);
    return icon;
}

}  // namespace sorbel
