#include "qt/ListRowPainter.h"

#include <QRegularExpression>
#include <algorithm>

#include "qt/Contrast.h"
#include "qt/DesignUnits.h"
#include "qt/ListView.h"
#include "qt/QtGraphics.h"
#include "qt/QtTheme.h"
#include "qt/ShapedLines.h"
#include "qt/Text.h"
#include "qt/TextMarks.h"

namespace sorbel {

namespace {

constexpr int Indent = 16;
constexpr int TriangleLeft = 4;
constexpr int IconSize = 16;
constexpr int Gap = 4;
constexpr qsizetype LongestLine = 1000;  // more than a row ever shows

/// The ground of a selected row, on which its text can be read. Without the focus it loses its colour.
QColor SelectionColor(const QPalette& palette, bool focused) {
    const QColor color = Legible(palette.color(QPalette::Active, QPalette::Highlight),
                                 palette.color(QPalette::HighlightedText));
    if (focused) return color;
    const QColor grey = QColor::fromHsl(color.hslHue(), color.hslSaturation() / 6, color.lightness());
    return Legible(grey, palette.color(QPalette::HighlightedText));
}

/// One line of a text: its line breaks, tabs and other control characters are marks.
QString OneLine(const String& text) {
    static const QRegularExpression breaks(QStringLiteral("\r\n|[\r\n\u2028\u2029]"));
    QString line = ToQt(text).left(LongestLine).replace(breaks, QStringLiteral(" \u23CE "));
    for (qsizetype at = line.size(); at-- > 0;)
        if (IsUnseen(line[at])) line.replace(at, 1, MarkFor(line[at]));
    return line;
}

}  // namespace

QRect ListRowPainter::TriangleRect(const QRect& row) const {
    return {row.left(), row.top(), mUnits.ToPixels(TriangleLeft + Indent), row.height()};
}

void ListRowPainter::Paint(QPainter& painter, int row, const QRect& place) const {
    if (mList.Selected(row)) painter.fillRect(place, SelectionColor(mView.palette(), mView.hasFocus()));
    if (mList.IsFolder(row)) PaintTriangle(painter, row, place);

    if (const auto style = PaintCell(painter, row, place)) PaintText(painter, *style, row, place);
}

/// The owner draws icons at the cell's top, so the cell is the band in which they are centred.
std::optional<ListRowPainter::TextStyle> ListRowPainter::PaintCell(QPainter& painter, int row,
                                                                   const QRect& place) const {
    const int band = mUnits.ToPixels(IconSize);
    const QRect cell(place.left(), place.top() + (place.height() - band) / 2, place.width(), band);
    QtGraphics g(painter, cell, mUnits);
    int textLeft = TriangleLeft + Indent + mList.Depth(row) * Indent;
    if (const auto picture = mList.RowPicture(row)) {
        g.DrawTinted(*picture, textLeft, 0, mTheme.Present(picture->Tint));  // kept from earlier
        textLeft += IconSize + Gap;
    }
    if (mList.PaintCell(g, row, textLeft, 0)) return std::nullopt;
    TextStyle style{mUnits.ToPixels(textLeft), mView.font(), std::nullopt};
    style.Font.setBold(g.Bold);
    style.Font.setItalic(g.Italic);
    if (g.ForeColorSet) style.Color = ToQColor(g.ForeColor);
    return style;
}

QRect ListRowPainter::TextRect(const TextStyle& style, const QRect& place) const {
    return place.adjusted(style.Left, 0, -mUnits.ToPixels(Gap), 0);
}

QRect ListRowPainter::PictureRect(int row, const QRect& place) const {
    if (!mList.RowPicture(row)) return {};
    const int left = place.left() + mUnits.ToPixels(TriangleLeft + Indent + mList.Depth(row) * Indent);
    return {left, place.top(), mUnits.ToPixels(IconSize), place.height()};
}

/// The owner is asked for the style as for a paint.
String ListRowPainter::ElidedText(int row, const QRect& place) const {
    QPixmap unseen(1, 1);
    QPainter painter(&unseen);
    painter.setFont(mView.font());
    const auto style = PaintCell(painter, row, place);
    if (!style) return {};
    const String text = mList.Cell(row);
    const int width = QFontMetrics(style->Font).horizontalAdvance(OneLine(text));
    return width > TextRect(*style, place).width() ? text : String();
}

void ListRowPainter::PaintTriangle(QPainter& painter, int row, const QRect& place) const {
    const QPointF middle = TriangleRect(place).toRectF().center();
    const QPolygonF right({{-2.5, -4}, {3, 0}, {-2.5, 4}});
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(middle);
    painter.scale(mUnits.Factor(), mUnits.Factor());
    if (mList.Expanded(row)) painter.rotate(90);
    QColor color = mView.palette().color(mList.Selected(row) ? QPalette::HighlightedText : QPalette::Text);
    color.setAlphaF(0.7F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(right);
    painter.restore();
}

void ListRowPainter::PaintText(QPainter& painter, const TextStyle& style, int row, const QRect& place) const {
    const QString line = OneLine(mList.Cell(row));
    const QPalette palette = mView.palette();
    const bool selected = mList.Selected(row);
    const QColor plain = palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    const QColor ground =
        selected ? SelectionColor(palette, mView.hasFocus()) : palette.color(QPalette::Base);
    painter.setPen(Legible(style.Color.value_or(plain), ground, plain));
    painter.setFont(style.Font);
    const QRect room = TextRect(style, place);
    const QStaticText& text = mShapes.Shape(line, style.Font, room.width());
    painter.drawStaticText(room.left(), room.top() + (room.height() - painter.fontMetrics().height()) / 2,
                           text);
}

}  // namespace sorbel
