#include "qt/MenuStyle.h"

#include <QApplication>
#include <QMenu>
#include <QProxyStyle>

namespace sorbel {

namespace {

/// The desktop's style but for one answer.
class ScrollingMenus : public QProxyStyle {
  public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

}  // namespace

void LetScroll(QMenu& menu) {
    static QStyle* const style = [] {
        auto* made = new ScrollingMenus;
        made->setParent(qApp);
        return made;
    }();
    menu.setStyle(style);
}

}  // namespace sorbel
