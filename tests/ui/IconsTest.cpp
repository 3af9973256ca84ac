#include "ui/Icons.h"

#include <gtest/gtest.h>

#include "platform/Exceptions.h"
#include "ui/IconFiles.h"

namespace sorbel {
namespace {

using test::IconFiles;

/// Pixels in one row, each red, green, blue, opacity.
std::shared_ptr<Picture> Row(const std::vector<std::array<uint8_t, 4>>& pixels, bool alpha) {
    auto row = std::make_shared<Picture>(static_cast<int>(pixels.size()), 1, alpha);
    row->Pixels().clear();
    for (const auto& pixel : pixels)
        row->Pixels().insert(row->Pixels().end(), pixel.begin(), pixel.end());
    return row;
}

std::vector<int> Opacities(const Picture& picture) {
    std::vector<int> opacities;
    for (size_t at = 3; at < picture.Pixels().size(); at += 4)
        opacities.push_back(picture.Pixels()[at]);
    return opacities;
}

TEST(IconsTest, HaveTheResolutionsThatExistAndAreReadOnce) {
    IconFiles::WritePng("Two.png", 16, 16);
    IconFiles::WritePng("Two@2x.png", 41, 38);
    const auto icon = Icons::GetIcon("Two");
    ASSERT_EQ(icon->ImageCount(), 2u);
    EXPECT_EQ(icon->Width(), 20);
    EXPECT_EQ(icon->Height(), 19);
    EXPECT_EQ(icon->IconName, "Two");
    EXPECT_EQ(icon->IndexedImage(0)->Pixels()[0], 255);
    EXPECT_THROW((void)icon->IndexedImage(2), OutOfBoundsException);

    std::filesystem::remove(IconFiles::Path("Two.png"));
    std::filesystem::remove(IconFiles::Path("Two@2x.png"));
    Icons::ResetCache();
    EXPECT_EQ(Icons::GetIcon("Two"), icon);
}

TEST(IconsTest, UnreadableFilesCountAsMissing) {
    IconFiles::WritePng("Bad.png", 24, 24);
    std::filesystem::resize_file(IconFiles::Path("Bad.png"), 60);
    std::ofstream(IconFiles::Path("Bad@2x.png")) << "no picture";
    IconFiles::WritePng("Bad@3x.png", Picture::MaximumSide + 1, 1);
    for (const StringView name : {"Bad", "Nowhere"}) {
        const auto icon = Icons::GetIcon(name);
        EXPECT_EQ(icon->ImageCount(), 0u);
        EXPECT_EQ(icon->Width() + icon->Height(), 0);
        EXPECT_TRUE(Icons::CreateImageFromMaskWithTint(*icon, Color(), 1.0)->Pixels().empty());
    }
    EXPECT_EQ(Picture::Open(FolderItem(IconFiles::Path("").native())), nullptr);
}

TEST(IconsTest, TintKeepsTheShapeAndLessensItsOpacity) {
    const auto source = Row({{9, 9, 9, 255}, {0, 0, 0, 100}, {255, 255, 255, 0}}, true);
    const struct {
        unsigned TintAlpha;
        double Opacity;
        std::vector<int> Expected;
    } cases[] = {
        {0, 1.0, {255, 100, 0}},  {0, 5.0, {255, 100, 0}}, {0, 0.5, {128, 51, 0}},  // base 127
        {0, 0.01, {3, 2, 0}},     {0, 0.0, {3, 2, 0}},     {0, -3.0, {3, 2, 0}},
        {128, 1.0, {127, 50, 0}}, {255, 1.0, {0, 0, 0}},
    };
    for (const auto& c : cases) {
        const Color tint = Color::FromRGB(10, 20, 30, c.TintAlpha);
        const auto tinted = Icons::CreateImageFromMaskWithTint(*source, tint, c.Opacity);
        EXPECT_EQ(Opacities(*tinted), c.Expected) << c.TintAlpha << " " << c.Opacity;
        EXPECT_TRUE(tinted->HasAlphaChannel());
        const std::vector<uint8_t> color(tinted->Pixels().begin() + 8, tinted->Pixels().begin() + 11);
        EXPECT_EQ(color, (std::vector<uint8_t>{10, 20, 30}));
    }
}

TEST(IconsTest, ColorTintTakesTheShapeFromGreyLevels) {
    const auto source = Row({{0, 0, 0, 255}, {255, 255, 255, 255}, {77, 77, 77, 0}, {255, 0, 0, 255}}, false);
    source->HorizontalResolution = 144;
    const auto tinted = Icons::CreateImageFromColorWithTint(*source, Color::FromRGB(1, 2, 3), 1.0);
    EXPECT_EQ(Opacities(*tinted), (std::vector<int>{255, 0, 178, 179}));
    EXPECT_FALSE(tinted->HasAlphaChannel());
    EXPECT_EQ(tinted->HorizontalResolution, 144);
    EXPECT_EQ(Opacities(*Icons::CreateImageFromMaskWithTint(*source, Color(), 1.0)),
              (std::vector<int>{255, 255, 0, 255}));
}

TEST(IconsTest, TintedResolutionsAreInOrder) {
    std::vector<std::shared_ptr<const Picture>> images;
    for (const int width : {48, 16, 32})
        images.push_back(std::make_shared<Picture>(width, 2, true));
    Picture source(16, 7, images);
    source.IconName = "Some";
    const auto tinted = Icons::CreateImageFromColorWithTint(source, Color::FromRGB(1, 2, 3), 1.0);
    ASSERT_EQ(tinted->ImageCount(), 3u);
    EXPECT_EQ(tinted->IndexedImage(0)->Width(), 16);
    EXPECT_EQ(tinted->IndexedImage(1)->Width(), 32);
    EXPECT_EQ(tinted->IndexedImage(2)->Width(), 48);
    EXPECT_EQ(tinted->Height(), 7);
    EXPECT_EQ(tinted->IconName, "Some");
    EXPECT_TRUE(tinted->Tinted);
    EXPECT_EQ(tinted->Tint, Color::FromRGB(1, 2, 3));
}

TEST(PictureTest, RefusesImpossibleSizes) {
    EXPECT_THROW(Picture(-1, 4, true), OutOfBoundsException);
    EXPECT_THROW(Picture(1, Picture::MaximumSide + 1, true), OutOfBoundsException);
    EXPECT_THROW(Picture(2, 3, true).ApplyMask(Picture(3, 2, false)), OutOfBoundsException);
}

}  // namespace
}  // namespace sorbel
