#pragma once

#include <QPainter>
#include <optional>

#include "platform/Text.h"

namespace sorbel {

class DesignUnits;
class Listbox;
class ListView;
class QtGraphics;
class QtTheme;
class ShapedLines;

/// Draws a row of a list: background, triangle of a folder, picture, and what the list's owner decides.
class ListRowPainter {
  public:
    ListRowPainter(Listbox& list, const ListView& view, const QtTheme& theme, const DesignUnits& units,
                   ShapedLines& shapes)
        : mList(list), mView(view), mTheme(theme), mUnits(units), mShapes(shapes) {}

    void Paint(QPainter& painter, int row, const QRect& place) const;
    /// Where a click opens or closes a folder.
    [[nodiscard]] QRect TriangleRect(const QRect& row) const;
    [[nodiscard]] QRect PictureRect(int row, const QRect& place) const;
    /// The text of a row that has no room for all of it, else nothing.
    [[nodiscard]] String ElidedText(int row, const QRect& place) const;

  private:
    void PaintTriangle(QPainter& painter, int row, const QRect& place) const;
    /// How the owner wants the text that the row's own drawing has left to the list.
    struct TextStyle {
        int Left = 0;  // in pixels, in the row
        QFont Font;
        std::optional<QColor> Color;
    };
    [[nodiscard]] std::optional<TextStyle> PaintCell(QPainter& painter, int row, const QRect& place) const;
    void PaintText(QPainter& painter, const TextStyle& style, int row, const QRect& place) const;
    [[nodiscard]] QRect TextRect(const TextStyle& style, const QRect& place) const;

    Listbox& mList;
    const ListView& mView;
    const QtTheme& mTheme;
    const DesignUnits& mUnits;
    ShapedLines& mShapes;
};

}  // namespace sorbel
