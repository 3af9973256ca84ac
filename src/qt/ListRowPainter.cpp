#include "qt/ListRowPainter.h"

#include <QRegularExpression>
#include <algorithm>
#include <cmath>

#include "qt/ListView.h"
#include "qt/QtGraphics.h"
#include "qt/QtTheme.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

constexpr int Indent = 16;
constexpr int TriangleLeft = 4;
constexpr int IconSize = 16;
constexpr int Gap = 4;
constexpr qsizetype LongestLine = 1000;  // more than a row ever shows

/// Without the focus the selected row keeps its contrast to the text but loses its colour.
QColor SelectionColor(const QPalette& palette, bool focused) {
    const QColor color = palette.color(QPalette::Active, QPalette::Highlight);
    if (focused) return color;
    return QColor::fromHsl(color.hslHue(), color.hslSaturation() / 6, color.lightness());
}

/// Brightness as the eye sees it, from 0 to 1.
double Luminance(const QColor& color) {
    const auto linear = [](double part) {
        return std::pow(part, 2.2);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// A muted colour that would drown in the selection is muted towards the colour of selected text instead.
QColor OnSelection(const QColor& color, const QColor& selection, const QColor& selectedText) {
    const auto [darker, lighter] = std::minmax({Luminance(color), Luminance(selection)});
    if ((lighter + 0.05) / (darker + 0.05) >= 2.0) return color;
    constexpr float Strength = 0.7F;
    const auto mix = [](float over, float under) {
        return Strength * over + (1 - Strength) * under;
    };
    return QColor::fromRgbF(mix(selectedText.redF(), selection.redF()),
                            mix(selectedText.greenF(), selection.greenF()),
                            mix(selectedText.blueF(), selection.blueF()));
}

/// One line of a text: its line breaks are marks.
QString OneLine(const String& text) {
    static const QRegularExpression breaks(QStringLiteral("\r\n|[\r\n\u2028\u2029]"));
    return ToQt(text).left(LongestLine).replace(breaks, QStringLiteral(" \u23CE "));
}

}  // namespace

QRect ListRowPainter::TriangleRect(const QRect& row) {
    return {row.left(), row.top(), TriangleLeft + Indent, row.height()};
}

void ListRowPainter::Paint(QPainter& painter, int row, const QRect& place) const {
    if (mList.Selected(row)) painter.fillRect(place, SelectionColor(mView.palette(), mView.hasFocus()));
    if (mList.IsFolder(row)) PaintTriangle(painter, row, place);

    // The owner draws icons at the cell's top, so the cell is the band in which they are centred.
    const QRect cell = place.adjusted(0, (place.height() - IconSize) / 2, 0, 0);
    int textLeft = TriangleLeft + Indent + mList.Depth(row) * Indent;
    QtGraphics g(painter, cell);
    if (const auto picture = mList.RowPicture(row)) {
        g.DrawTinted(*picture, textLeft, 0, mTheme.Present(picture->Tint));  // kept from earlier
        textLeft += IconSize + Gap;
    }
    if (!mList.PaintCell(g, row, textLeft, 0))
        PaintText(painter, g, row, QRect(textLeft, 0, cell.width() - textLeft - Gap, IconSize));
}

void ListRowPainter::PaintTriangle(QPainter& painter, int row, const QRect& place) const {
    const QPointF middle = TriangleRect(place).toRectF().center();
    const QPolygonF right({{-2.5, -4}, {3, 0}, {-2.5, 4}});
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(middle);
    if (mList.Expanded(row)) painter.rotate(90);
    QColor color = mView.palette().color(mList.Selected(row) ? QPalette::HighlightedText : QPalette::Text);
    color.setAlphaF(0.7F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(right);
    painter.restore();
}

void ListRowPainter::PaintText(QPainter& painter, const QtGraphics& g, int row, const QRect& place) const {
    const QString line = OneLine(mList.Cell(row));
    const QPalette palette = mView.palette();
    const bool selected = mList.Selected(row);
    QColor color = palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    if (g.ForeColorSet) color = ToQColor(g.ForeColor);
    if (selected)
        color =
            OnSelection(color, palette.color(QPalette::Highlight), palette.color(QPalette::HighlightedText));
    painter.setPen(color);
    painter.setFont(g.Font());
    painter.setClipping(false);  // letters may be taller than the icons' band
    painter.setLayoutDirection(line.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(line, Qt::ElideRight, place.width()));
}

}  // namespace sorbel
