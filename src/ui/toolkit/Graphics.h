#pragma once

#include "platform/Color.h"
#include "platform/Text.h"
#include "ui/toolkit/Picture.h"

namespace sorbel {

/// Something to draw on, in points, with its origin at the top left corner of a cell or canvas.
class Graphics {
  public:
    virtual ~Graphics() = default;

    Color ForeColor;
    bool ForeColorSet = false;  ///< a paint handler has chosen `ForeColor`
    bool Bold = false;
    bool Italic = false;

    void SetForeColor(Color color) {
        ForeColor = color;
        ForeColorSet = true;
    }

    [[nodiscard]] virtual int Width() const = 0;
    [[nodiscard]] virtual int Height() const = 0;
    [[nodiscard]] virtual double StringWidth(StringView text) const = 0;
    virtual void DrawPicture(const Picture& picture, int x, int y) = 0;
    virtual void DrawLine(int x1, int y1, int x2, int y2) = 0;
    virtual void DrawRect(int x, int y, int width, int height) = 0;
    virtual void FillRect(int x, int y, int width, int height) = 0;
};

}  // namespace sorbel
