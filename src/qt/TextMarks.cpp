#include "qt/TextMarks.h"

#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <array>
#include <cmath>

namespace sorbel {

namespace {

QString Digits(QChar character) {
    return QString::number(character.unicode(), 16).toUpper().rightJustified(2, u'0');
}

}  // namespace

QString MarkFor(QChar character) {
    return character == u'\t' ? QStringLiteral(" \u21E5 ") : u'\u2039' + Digits(character) + u'\u203A';
}

void PaintTabMark(QPainter& painter, const QPointF& start, const QPointF& end) {
    constexpr double longest = 12, head = 3;
    const double width = end.x() - start.x();
    const double length = std::clamp(std::abs(width) - 2, head, longest);
    painter.save();
    painter.translate((start + end) / 2);
    if (width < 0) painter.scale(-1, 1);
    const double tip = length / 2;
    const std::array<QPointF, 5> arrow = {
        {{-tip, 0}, {tip, 0}, {tip - head, -head}, {tip, 0}, {tip - head, head}}};
    painter.drawPolyline(arrow.data(), static_cast<int>(arrow.size()));
    painter.drawLine(QPointF(tip + 1, -head), QPointF(tip + 1, head));
    painter.restore();
}

void PaintControlMark(QPainter& painter, QChar character, const QPointF& start, const QPointF& end,
                      const QPalette& colors) {
    constexpr double narrowest = 7;
    QFont font = painter.font();
    const QFontMetricsF metrics(font);
    const double width = std::max(std::abs(end.x() - start.x()), narrowest);
    QRectF field(0, 0, width, metrics.height());
    field.moveCenter((start + end) / 2);
    painter.save();
    painter.fillRect(field, colors.color(QPalette::Base));
    painter.fillRect(field, colors.color(QPalette::PlaceholderText));
    font.setPixelSize(std::max(1, qRound(metrics.height() / 2)));
    painter.setFont(font);
    painter.setPen(colors.color(QPalette::Base));
    const QString digits = Digits(character);
    const QSizeF half(field.width(), field.height() / 2);
    const int flags = static_cast<int>(Qt::AlignCenter) | Qt::TextDontClip;
    painter.drawText(QRectF(field.topLeft(), half), flags, digits.left(1));
    painter.drawText(QRectF(field.topLeft() + QPointF(0, half.height()), half), flags, digits.mid(1));
    painter.restore();
}

}  // namespace sorbel
