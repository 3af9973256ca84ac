#include "ui/Icons.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "platform/Dictionary.h"
#include "platform/SpecialFolder.h"

namespace sorbel::Icons {

namespace {

using Images = std::vector<std::shared_ptr<const Picture>>;
using GreyCopy = Picture (Picture::*)() const;

/// "Resources" beside the program, or in the working directory where the system does not tell its path.
std::shared_ptr<FolderItem> ResourcesBesideProgram() {
    std::error_code unknown;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", unknown);
    return std::make_shared<FolderItem>((program.parent_path() / "Resources").native());
}

String FileName(StringView name, int scale) {
    const String suffix = scale == 1 ? "" : "@" + std::to_string(scale) + "x";
    return String(name) + suffix + ".png";
}

std::shared_ptr<const Picture> LoadIcon(StringView name) {
    Images images;
    int width = 0;
    int height = 0;
    for (int scale = 1; scale <= 3; ++scale) {
        const std::shared_ptr<FolderItem> file = ResourcesFolder()->Child(FileName(name, scale));
        const std::shared_ptr<Picture> image = file && file->Exists() ? Picture::Open(*file) : nullptr;
        if (!image) continue;
        images.push_back(image);
        width = image->Width() / scale;
        height = image->Height() / scale;
    }
    auto icon = std::make_shared<Picture>(width, height, std::move(images));
    icon->IconName = name;
    return icon;
}

int BaseValue(Color tint, double opacity) {
    const double strength = std::clamp(opacity, 0.01, 1.0);
    const double base = 255.0 - (255.0 - tint.Alpha()) * strength;
    return static_cast<int>(std::clamp(base, 0.0, 255.0));
}

/// Lifts a mask from the range 0 to 255 to the range base to 255: black becomes less opaque, white stays.
const ChannelMap& IconMaskTransformArray(int base) {
    static std::map<int, ChannelMap> arrays;
    const auto [place, isNew] = arrays.try_emplace(base);
    if (isNew)
        for (size_t entry = 0; entry < place->second.size(); ++entry) {
            const double lifted = static_cast<double>(entry) * ((255 - base) / 255.0) + base;
            place->second[entry] = static_cast<uint8_t>(lifted);
        }
    return place->second;
}

std::shared_ptr<Picture> TintedImage(const Picture& source, Color tint, double opacity, GreyCopy greyCopy) {
    auto image = std::make_shared<Picture>(source.Width(), source.Height(), source.HasAlphaChannel());
    image->HorizontalResolution = source.HorizontalResolution;
    image->VerticalResolution = source.VerticalResolution;
    image->Fill(Color::FromRGB(tint.Red(), tint.Green(), tint.Blue()));
    Picture shape = (source.*greyCopy)();
    shape.Transform(IconMaskTransformArray(BaseValue(tint, opacity)));
    image->ApplyMask(shape);
    return image;
}

std::shared_ptr<const Picture> TintedCopy(const Picture& source, Color tint, double opacity,
                                          GreyCopy greyCopy);

std::shared_ptr<Picture> TintedImages(const Picture& source, Color tint, double opacity, GreyCopy greyCopy) {
    Images images;
    for (size_t index = 0; index < source.ImageCount(); ++index)
        images.push_back(TintedCopy(*source.IndexedImage(index), tint, opacity, greyCopy));
    std::stable_sort(images.begin(), images.end(),
                     [](const auto& a, const auto& b) { return a->Width() < b->Width(); });
    return std::make_shared<Picture>(source.Width(), source.Height(), std::move(images));
}

std::shared_ptr<const Picture> TintedCopy(const Picture& source, Color tint, double opacity,
                                          GreyCopy greyCopy) {
    const std::shared_ptr<Picture> copy = source.ImageCount() > 0
                                              ? TintedImages(source, tint, opacity, greyCopy)
                                              : TintedImage(source, tint, opacity, greyCopy);
    copy->IconName = source.IconName;
    copy->Tint = tint;
    copy->Tinted = true;
    return copy;
}

}  // namespace

std::shared_ptr<FolderItem> ResourcesFolder() {
    static std::shared_ptr<FolderItem> folder;
    if (folder) return folder;
    folder = SpecialFolder::Resources();
    if (!folder || !folder->Exists()) folder = ResourcesBesideProgram();
    return folder;
}

std::shared_ptr<const Picture> GetIcon(StringView name) {
    static Dictionary<String, std::shared_ptr<const Picture>> iconCache;
    std::shared_ptr<const Picture>& icon = iconCache.FindOrAdd(name, [name] { return String(name); });
    if (!icon) icon = LoadIcon(name);
    return icon;
}

void ResetCache() {}

std::shared_ptr<const Picture> CreateImageFromMaskWithTint(const Picture& source, Color tint,
                                                           double opacity) {
    return TintedCopy(source, tint, opacity, &Picture::CopyMask);
}

std::shared_ptr<const Picture> CreateImageFromColorWithTint(const Picture& source, Color tint,
                                                            double opacity) {
    return TintedCopy(source, tint, opacity, &Picture::CopyColorChannels);
}

}  // namespace sorbel::Icons
