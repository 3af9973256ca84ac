#include "qt/ShapedLines.h"

#include <QFontMetrics>
#include <QTextOption>

namespace sorbel {

const QStaticText& ShapedLines::Shape(const QString& line, const QFont& font, int width) {
    const Key key{line, font.key(), width};
    if (const QStaticText* known = mLines.object(key)) return *known;
    auto* text = new QStaticText(QFontMetrics(font).elidedText(line, Qt::ElideRight, width));
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(line.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    text->setTextOption(option);
    text->setTextFormat(Qt::PlainText);
    text->prepare(QTransform(), font);
    mLines.insert(key, text);
    return *text;
}

}  // namespace sorbel
