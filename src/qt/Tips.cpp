#include "qt/Tips.h"

#include <QHelpEvent>
#include <QToolTip>

#include "qt/ControlView.h"

namespace sorbel {

namespace {

constexpr qsizetype LongestTip = 1000;

/// Texts of documents may look like markup, and only markup is wrapped.
QString Wrapped(const QString& text) {
    const QString shown = text.size() > LongestTip ? text.left(LongestTip) + u'…' : text;
    return QStringLiteral("<div style=\"white-space: pre-wrap\">%1</div>").arg(shown.toHtmlEscaped());
}

}  // namespace

void ShowTip(const QHelpEvent& event, QWidget& widget, const PlacedTip& tip) {
    if (tip.Text.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(event.globalPos(), Wrapped(tip.Text), &widget, tip.Place);
}

}  // namespace sorbel
