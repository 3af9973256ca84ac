#pragma once

#include <memory>

#include "platform/Color.h"
#include "platform/FolderItem.h"
#include "platform/Text.h"
#include "ui/toolkit/Picture.h"

namespace sorbel {

/// The program's small pictures, and tinted copies of them, so that monochrome artwork follows the text
/// colour.
namespace Icons {

/// The icon at all resolutions for which there is a file: `name` + ".png", "@2x.png", "@3x.png". It is read
/// once and kept. Without any readable file it is a picture of size 0 that draws nothing.
[[nodiscard]] std::shared_ptr<const Picture> GetIcon(StringView name);

/// Called when the appearance has changed. Does nothing: tints are applied at each drawing, so a loaded icon
/// stays right.
void ResetCache();

/// The folder of the icon files; found once and kept.
[[nodiscard]] std::shared_ptr<FolderItem> ResourcesFolder();

/// A copy in the colour `tint` whose shape is the source's transparency. `opacity` is limited to 0.01 to 1.0.
/// The representations of a multi-resolution source come out from narrowest to widest.
[[nodiscard]] std::shared_ptr<const Picture> CreateImageFromMaskWithTint(const Picture& source, Color tint,
                                                                         double opacity);
/// The same with the shape taken from the source's grey levels: black is opaque, white is transparent.
[[nodiscard]] std::shared_ptr<const Picture> CreateImageFromColorWithTint(const Picture& source, Color tint,
                                                                          double opacity);

}  // namespace Icons

}  // namespace sorbel
