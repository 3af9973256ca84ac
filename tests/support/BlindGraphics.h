#pragma once

#include "ui/toolkit/Graphics.h"

namespace sorbel {

/// Takes what a paint gives and draws nothing.
class BlindGraphics : public Graphics {
  public:
    [[nodiscard]] int Width() const override { return 340; }
    [[nodiscard]] int Height() const override { return 20; }
    [[nodiscard]] double StringWidth(StringView text) const override {
        return static_cast<double>(Len(text)) * 7;
    }
    void DrawPicture(const Picture&, int, int) override {}
    void DrawLine(int, int, int, int) override {}
    void DrawRect(int, int, int, int) override {}
    void FillRect(int, int, int, int) override {}
};

}  // namespace sorbel
