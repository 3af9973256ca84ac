#pragma once

#include <QColor>

namespace sorbel {

/// How well two colours can be told apart, from 1 to 21: the contrast ratio of the Web Content Accessibility
/// Guidelines 2.
[[nodiscard]] double Contrast(const QColor& one, const QColor& other);

/// The contrast that text needs to be read by most people.
constexpr double ContrastOfText = 4.5;

/// A colour that can be read on `ground`: the colour itself, or with as much black or white as that takes.
[[nodiscard]] QColor Legible(const QColor& color, const QColor& ground);

/// The same with as much of `towards` as it takes, which can be read there.
[[nodiscard]] QColor Legible(const QColor& color, const QColor& ground, const QColor& towards);

}  // namespace sorbel
