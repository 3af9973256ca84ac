#include "qt/DesignUnits.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

namespace sorbel {

namespace {

// Height and width of letters in the font that the layout was made for.
constexpr double LineHeight = 14.0;
constexpr double AlphabetWidth = 386.0;
const QString Alphabet = QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");

constexpr double Rounding = 1e-6;

}  // namespace

DesignUnits::DesignUnits(const QFont& font) {
    const QFontMetricsF metrics(font);
    mFactor =
        std::max({1.0, metrics.height() / LineHeight, metrics.horizontalAdvance(Alphabet) / AlphabetWidth});
}

int DesignUnits::ToPixels(int units) const {
    return static_cast<int>(std::ceil(units * mFactor - Rounding));
}

int DesignUnits::FromPixels(int pixels) const {
    return static_cast<int>(std::floor(pixels / mFactor + Rounding));
}

QRect DesignUnits::ToPixels(const Bounds& place) const {
    const int left = ToPixels(place.Left), top = ToPixels(place.Top);
    return {left, top, ToPixels(place.Left + std::max(place.Width, 0)) - left,
            ToPixels(place.Top + std::max(place.Height, 0)) - top};
}

QFont DesignUnits::ForUnits(QFont font) const {
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() / mFactor);
    else
        font.setPixelSize(std::max(1, FromPixels(font.pixelSize())));
    return font;
}

}  // namespace sorbel
