#include "qt/Contrast.h"

#include <algorithm>
#include <cmath>

namespace sorbel {

namespace {

constexpr double LiftedTo =
    ContrastOfText + 0.2;  // strokes of letters are thin and seldom reach their colour

/// Brightness as the eye sees it, from 0 to 1.
double Luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor Mixed(const QColor& color, const QColor& with, int percent) {
    const auto mix = [percent](int part, int other) {
        return (part * (100 - percent) + other * percent) / 100;
    };
    return {mix(color.red(), with.red()), mix(color.green(), with.green()), mix(color.blue(), with.blue())};
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor Legible(const QColor& color, const QColor& ground) {
    const QColor black(Qt::black), white(Qt::white);
    const bool canLighten = Contrast(white, ground) >= ContrastOfText;
    const bool isLighter = Luminance(color) >= Luminance(ground);
    return Legible(color, ground,
                   canLighten && (isLighter || Contrast(black, ground) < ContrastOfText) ? white : black);
}

QColor Legible(const QColor& color, const QColor& ground, const QColor& towards) {
    if (Contrast(color, ground) >= ContrastOfText) return color;
    int percent = 1;
    while (percent < 100 && Contrast(Mixed(color, towards, percent), ground) < LiftedTo)
        ++percent;
    return Mixed(color, towards, percent);
}

}  // namespace sorbel
