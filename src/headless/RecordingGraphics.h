#pragma once

#include "headless/JsonText.h"
#include "ui/toolkit/Graphics.h"

namespace sorbel::headless {

/// A cell or canvas that keeps the pictures drawn on it. All characters are of one width.
class RecordingGraphics : public Graphics {
  public:
    static constexpr int RowHeight = 20;

    explicit RecordingGraphics(int width) : mWidth(width) {}

    /// "name", "x", "y" and "tint", null for a picture drawn as it is; in the order of drawing.
    [[nodiscard]] const Json& Icons() const { return mIcons; }

    [[nodiscard]] int Width() const override { return mWidth; }
    [[nodiscard]] int Height() const override { return RowHeight; }
    [[nodiscard]] double StringWidth(StringView text) const override;
    void DrawPicture(const Picture& picture, int x, int y) override;
    void DrawLine(int, int, int, int) override {}
    void DrawRect(int, int, int, int) override {}
    void FillRect(int, int, int, int) override {}

  private:
    int mWidth;
    Json mIcons = Json::array();
};

}  // namespace sorbel::headless
