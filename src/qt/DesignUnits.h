#pragma once

#include <QFont>
#include <QRect>

#include "ui/toolkit/Control.h"

namespace sorbel {

/// How the units in which windows are laid out become pixels: by one factor, so that what fits into a control
/// with the font that the layout was made for fits with the desktop's.
class DesignUnits {
  public:
    explicit DesignUnits(const QFont& font);

    /// Pixels of a unit, at least 1.
    [[nodiscard]] double Factor() const { return mFactor; }
    /// No unit is lost on the way to pixels and back.
    [[nodiscard]] int ToPixels(int units) const;
    [[nodiscard]] int FromPixels(int pixels) const;
    [[nodiscard]] QPoint FromPixels(const QPoint& pixels) const {
        return {FromPixels(pixels.x()), FromPixels(pixels.y())};
    }
    /// Edges that touch in units touch in pixels.
    [[nodiscard]] QRect ToPixels(const Bounds& place) const;
    /// The font that has the size of `font` when a painter draws in units.
    [[nodiscard]] QFont ForUnits(QFont font) const;

  private:
    double mFactor;
};

}  // namespace sorbel
