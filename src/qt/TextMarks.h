#pragma once

#include <QString>

class QPainter;
class QPalette;
class QPointF;

namespace sorbel {

/// Whether a character is a control character, a tab included, that text shows as nothing or as blanks.
[[nodiscard]] inline bool IsUnseen(QChar character) {
    return character.category() == QChar::Other_Control;
}

/// What stands for such a character where a text is only shown: an arrow for a tab, else its number in
/// hexadecimal digits: few fonts have pictures of control characters.
[[nodiscard]] QString MarkFor(QChar character);

// In a text that is edited, its characters keep their places, which are given in the middle of their line.

/// An arrow in the painter's pen to where a tab leads.
void PaintTabMark(QPainter& painter, const QPointF& start, const QPointF& end);
/// A dark field with the digits of the character's number, over whatever the font has for it.
void PaintControlMark(QPainter& painter, QChar character, const QPointF& start, const QPointF& end,
                      const QPalette& colors);

}  // namespace sorbel
