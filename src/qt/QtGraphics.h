#pragma once

#include <QPainter>
#include <QRect>

#include "qt/DesignUnits.h"
#include "ui/toolkit/Graphics.h"

namespace sorbel {

/// Draws in units through a painter into a rectangle of pixels, whose top left corner is the origin. What
/// lies outside is clipped. The painter is as before once this is gone.
class QtGraphics : public Graphics {
  public:
    QtGraphics(QPainter& painter, const QRect& area, const DesignUnits& units);
    ~QtGraphics() override { mPainter.restore(); }
    QtGraphics(const QtGraphics&) = delete;
    QtGraphics& operator=(const QtGraphics&) = delete;

    [[nodiscard]] int Width() const override { return mWidth; }
    [[nodiscard]] int Height() const override { return mHeight; }
    [[nodiscard]] double StringWidth(StringView text) const override;
    void DrawPicture(const Picture& picture, int x, int y) override;
    /// A tinted picture, in a tint that may not be its own.
    void DrawTinted(const Picture& picture, int x, int y, Color tint);
    void DrawLine(int x1, int y1, int x2, int y2) override;
    void DrawRect(int x, int y, int width, int height) override;
    void FillRect(int x, int y, int width, int height) override;

    /// The painter's font in the style chosen at present.
    [[nodiscard]] QFont Font() const;

  private:
    [[nodiscard]] QPen HairLine() const;

    QPainter& mPainter;
    int mWidth, mHeight;
};

}  // namespace sorbel
