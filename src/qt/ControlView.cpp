#include "qt/ControlView.h"

#include <QApplication>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>

#include "qt/Contrast.h"
#include "qt/QtCanvas.h"
#include "qt/QtLabel.h"
#include "qt/QtListbox.h"
#include "qt/QtPopupMenu.h"
#include "qt/QtPushButton.h"
#include "qt/QtTextArea.h"
#include "qt/QtTextField.h"
#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

class ViewMaker : public ControlVisitor {
  public:
    explicit ViewMaker(QtWindow& window) : mWindow(window) {}
    void Visit(Canvas& control) override { Made = std::make_unique<QtCanvas>(control, mWindow); }
    void Visit(Label& control) override { Made = MakeLabelView(control, mWindow); }
    void Visit(Listbox& control) override { Made = std::make_unique<QtListbox>(control, mWindow); }
    void Visit(PopupMenu& control) override { Made = std::make_unique<QtPopupMenu>(control, mWindow); }
    void Visit(PushButton& control) override { Made = std::make_unique<QtPushButton>(control, mWindow); }
    void Visit(TextArea& control) override { Made = std::make_unique<QtTextArea>(control, mWindow); }
    void Visit(TextField& control) override { Made = std::make_unique<QtTextField>(control, mWindow); }

    std::unique_ptr<ControlView> Made;

  private:
    QtWindow& mWindow;
};

}  // namespace

std::unique_ptr<ControlView> MakeControlView(Control& control, QtWindow& window) {
    ViewMaker maker(window);
    control.Accept(maker);
    return std::move(maker.Made);
}

ControlView::ControlView(Control& control, QtWindow& window, QWidget& widget)
    : mControl(control), mWindow(window), mWidget(widget) {
    mWidget.setObjectName(ToQt(control.Name()));
    mWidget.installEventFilter(&window);
    mControl.Attach(this);
}

void ControlView::Changed(Aspect aspect) {
    mChanged.Add(aspect);
    mWindow.ScheduleFlush();
}

PlacedTip ControlView::TipAt(const QPoint& /*at*/) const {
    return {mControl.Tip ? ToQt(mControl.Tip()) : QString(), {}};
}

void ControlView::Flush() {
    if (!mChanged.Any()) return;
    const Aspects changed = std::exchange(mChanged, Aspects());
    const QSignalBlocker quiet(mWidget);
    if (changed.Has(Aspect::Geometry)) {
        mWidget.setGeometry(mWindow.Units().ToPixels(mControl.Place()));
        mWidget.setVisible(mControl.Visible());
    }
    if (changed.Has(Aspect::Enabled)) mWidget.setEnabled(mControl.Enabled());
    if (!mControl.AccessibleName().empty() && mWidget.accessibleName().isEmpty())
        mWidget.setAccessibleName(ToQt(mControl.AccessibleName()));
    Show(changed);
}

void DrawFocusFrame(QPainter& painter, const QWidget& widget) {
    painter.setPen(widget.palette().color(QPalette::Highlight));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(widget.rect().adjusted(0, 0, -1, -1));
}

/// Asks the application: a widget hears of a new palette later than what it shows.
QColor GroundOf(const QWidget& widget, QPalette::ColorGroup group) {
    const bool isField = widget.inherits("QLineEdit") || widget.inherits("QTextEdit");
    const bool isClear = widget.palette().color(QPalette::Base).alpha() == 0;
    return QApplication::palette().color(group, isField && !isClear ? QPalette::Base : QPalette::Window);
}

void SetTextColor(QWidget& widget, QPalette::ColorRole role, const QColor& wanted) {
    const QColor grey = QApplication::palette().color(QPalette::Disabled, role);
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Disabled, role, Legible(grey, GroundOf(widget, QPalette::Disabled)));
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        palette.setColor(group, role, Legible(wanted, GroundOf(widget)));
    if (palette != widget.palette()) widget.setPalette(palette);
}

}  // namespace sorbel
