#pragma once

#include <QPainter>

namespace sorbel {

class Listbox;
class ListView;
class QtGraphics;
class QtTheme;

/// Draws a row of a list: background, triangle of a folder, picture, and what the list's owner decides.
class ListRowPainter {
  public:
    ListRowPainter(Listbox& list, const ListView& view, const QtTheme& theme)
        : mList(list), mView(view), mTheme(theme) {}

    void Paint(QPainter& painter, int row, const QRect& place) const;
    /// Where a click opens or closes a folder.
    [[nodiscard]] static QRect TriangleRect(const QRect& row);

  private:
    void PaintTriangle(QPainter& painter, int row, const QRect& place) const;
    void PaintText(QPainter& painter, const QtGraphics& g, int row, const QRect& place) const;

    Listbox& mList;
    const ListView& mView;
    const QtTheme& mTheme;
};

}  // namespace sorbel
