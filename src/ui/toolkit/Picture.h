#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/Color.h"
#include "platform/FolderItem.h"
#include "platform/Text.h"

namespace sorbel {

/// A value for each of the 256 values of a channel.
using ChannelMap = std::array<uint8_t, 256>;

/// Pixels, or several pictures of one subject at different resolutions. A picture has either an alpha channel
/// or a separate mask. Both are kept as the opacity of each pixel; the mask is its inverse, a grey picture in
/// which black is opaque and white is transparent.
class Picture {
  public:
    static constexpr int MaximumSide = 16384;

    /// Pixels of opaque black. Sizes in pixels; fails with OutOfBoundsException below 0 and above
    /// `MaximumSide`.
    Picture(int width, int height, bool hasAlphaChannel);
    /// A multi-resolution picture of a size in points.
    Picture(int width, int height, std::vector<std::shared_ptr<const Picture>> images);

    /// Reads a PNG file; null if it cannot be read as one or a side is longer than `MaximumSide`.
    static std::shared_ptr<Picture> Open(const FolderItem& f);

    [[nodiscard]] int Width() const { return mWidth; }
    [[nodiscard]] int Height() const { return mHeight; }
    [[nodiscard]] bool HasAlphaChannel() const { return mHasAlphaChannel; }
    [[nodiscard]] size_t ImageCount() const { return mImages.size(); }
    /// Fails with OutOfBoundsException.
    [[nodiscard]] const std::shared_ptr<const Picture>& IndexedImage(size_t index) const;

    // One byte a value, rows from the top without padding: red, green, blue, opacity (255 opaque). Colours
    // are not multiplied by the opacity. A multi-resolution picture has no pixels of its own.
    [[nodiscard]] const std::vector<uint8_t>& Pixels() const { return mPixels; }
    [[nodiscard]] std::vector<uint8_t>& Pixels() { return mPixels; }

    // --- Operations on the pixels ---
    /// Gives every pixel this colour, with its opacity.
    void Fill(Color color);
    /// The mask as an opaque grey picture of its own.
    [[nodiscard]] Picture CopyMask() const;
    /// The colours without the opacity.
    [[nodiscard]] Picture CopyColorChannels() const;
    /// Sends red, green and blue of every pixel through the map.
    void Transform(const ChannelMap& map);
    /// Takes the opacity from the grey levels of a mask. Fails with OutOfBoundsException if it has another
    /// size.
    void ApplyMask(const Picture& mask);

    double HorizontalResolution = 72;
    double VerticalResolution = 72;

    /// Where the picture comes from: the icon's name and, for a tinted copy, the tint. For whoever reports a
    /// drawing or keeps drawn icons.
    String IconName;
    Color Tint;
    bool Tinted = false;

  private:
    int mWidth;
    int mHeight;
    bool mHasAlphaChannel;
    std::vector<std::shared_ptr<const Picture>> mImages;
    std::vector<uint8_t> mPixels;
};

}  // namespace sorbel
