#include "ui/toolkit/Picture.h"

#include <png.h>

#include "platform/Exceptions.h"

namespace sorbel {

namespace {

constexpr size_t PixelSize = 4;
constexpr size_t Opacity = 3;

size_t CheckedPixelCount(int width, int height) {
    if (width < 0 || height < 0 || width > Picture::MaximumSide || height > Picture::MaximumSide)
        throw OutOfBoundsException("A picture cannot have this size.");
    return static_cast<size_t>(width) * static_cast<size_t>(height);
}

void SetPixel(uint8_t* pixel, uint8_t red, uint8_t green, uint8_t blue, uint8_t opacity) {
    pixel[0] = red;
    pixel[1] = green;
    pixel[2] = blue;
    pixel[Opacity] = opacity;
}

/// How bright the eye sees a pixel. The weights add up to 1000, so that a grey keeps its level.
uint8_t GreyLevel(const uint8_t* pixel) {
    return static_cast<uint8_t>((299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2]) / 1000);
}

/// A PNG file that is being read; whatever happens, the reader's memory goes with it.
struct PngFile {
    png_image Image{};

    PngFile() { Image.version = PNG_IMAGE_VERSION; }
    ~PngFile() { png_image_free(&Image); }
    PngFile(const PngFile&) = delete;
    PngFile& operator=(const PngFile&) = delete;

    bool ReadHeader(const FolderItem& f) {
        return png_image_begin_read_from_file(&Image, f.NativePath().c_str()) != 0;
    }
    /// A header may promise any size, so it is looked at before memory is asked for.
    [[nodiscard]] bool TooLarge() const {
        return Image.width > Picture::MaximumSide || Image.height > Picture::MaximumSide;
    }
    [[nodiscard]] bool HasAlpha() const { return (Image.format & PNG_FORMAT_FLAG_ALPHA) != 0; }

    bool ReadInto(std::vector<uint8_t>& pixels) {
        Image.format = PNG_FORMAT_RGBA;
        return png_image_finish_read(&Image, nullptr, pixels.data(), 0, nullptr) != 0;
    }
};

}  // namespace

Picture::Picture(int width, int height, bool hasAlphaChannel)
    : mWidth(width),
      mHeight(height),
      mHasAlphaChannel(hasAlphaChannel),
      mPixels(PixelSize * CheckedPixelCount(width, height)) {
    Fill(Color());
}

Picture::Picture(int width, int height, std::vector<std::shared_ptr<const Picture>> images)
    : mWidth(width), mHeight(height), mHasAlphaChannel(false), mImages(std::move(images)) {}

std::shared_ptr<Picture> Picture::Open(const FolderItem& f) {
    PngFile file;
    if (!file.ReadHeader(f) || file.TooLarge()) return nullptr;
    auto picture = std::make_shared<Picture>(static_cast<int>(file.Image.width),
                                             static_cast<int>(file.Image.height), file.HasAlpha());
    return file.ReadInto(picture->mPixels) ? picture : nullptr;
}

const std::shared_ptr<const Picture>& Picture::IndexedImage(size_t index) const {
    if (index >= mImages.size()) throw OutOfBoundsException("The picture has no such representation.");
    return mImages[index];
}

void Picture::Fill(Color color) {
    for (size_t at = 0; at < mPixels.size(); at += PixelSize)
        SetPixel(&mPixels[at], static_cast<uint8_t>(color.Red()), static_cast<uint8_t>(color.Green()),
                 static_cast<uint8_t>(color.Blue()), static_cast<uint8_t>(255 - color.Alpha()));
}

Picture Picture::CopyMask() const {
    Picture mask(mWidth, mHeight, false);
    for (size_t at = 0; at < mPixels.size(); at += PixelSize) {
        const auto grey = static_cast<uint8_t>(255 - mPixels[at + Opacity]);
        SetPixel(&mask.mPixels[at], grey, grey, grey, 255);
    }
    return mask;
}

Picture Picture::CopyColorChannels() const {
    Picture colors(mWidth, mHeight, false);
    for (size_t at = 0; at < mPixels.size(); at += PixelSize)
        SetPixel(&colors.mPixels[at], mPixels[at], mPixels[at + 1], mPixels[at + 2], 255);
    return colors;
}

void Picture::Transform(const ChannelMap& map) {
    for (size_t at = 0; at < mPixels.size(); at += PixelSize)
        for (size_t channel = 0; channel < Opacity; ++channel)
            mPixels[at + channel] = map[mPixels[at + channel]];
}

void Picture::ApplyMask(const Picture& mask) {
    if (mask.mPixels.size() != mPixels.size() || mask.mWidth != mWidth)
        throw OutOfBoundsException("The mask does not have the picture's size.");
    for (size_t at = 0; at < mPixels.size(); at += PixelSize)
        mPixels[at + Opacity] = static_cast<uint8_t>(255 - GreyLevel(&mask.mPixels[at]));
}

}  // namespace sorbel
