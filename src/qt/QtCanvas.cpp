#include "qt/QtCanvas.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include "qt/QtGraphics.h"
#include "qt/QtWindow.h"

namespace sorbel {

namespace {

class CanvasWidget : public QWidget {
  public:
    CanvasWidget(Canvas& control, QtWindow& window)
        : QWidget(&window.Content()), mControl(control), mWindow(window) {
        if (IsButton()) setFocusPolicy(Qt::TabFocus);
        if (control.Cursor() == MouseCursor::SplitterEastWest) setCursor(Qt::SplitHCursor);
        if (control.Cursor() == MouseCursor::SplitterNorthSouth) setCursor(Qt::SplitVCursor);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        {
            QtGraphics g(painter, rect());
            mWindow.Guard([&] { mControl.Event_Paint(g); });
        }
        if (!hasFocus()) return;
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() != Qt::LeftButton) return event->ignore();
        const QPoint at = Position(*event);
        mDragging = mControl.UserMouseDown(at.x(), at.y());
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (!mDragging) return;
        const QPoint at = Position(*event);
        mControl.UserMouseDrag(at.x(), at.y());
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (!std::exchange(mDragging, false)) return;
        const QPoint at = Position(*event);
        mControl.UserMouseUp(at.x(), at.y());
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (!IsButton() || (event->key() != Qt::Key_Space && event->key() != Qt::Key_Return))
            return QWidget::keyPressEvent(event);
        mControl.UserMouseDown(width() / 2, height() / 2);
        mControl.UserMouseUp(width() / 2, height() / 2);
    }

  private:
    /// A press on it does something; a splitter, which has a cursor of its own, is for dragging.
    [[nodiscard]] bool IsButton() const {
        return mControl.MouseDown && mControl.Cursor() == MouseCursor::Standard;
    }

    /// In the control's own coordinates. A drag may have moved the control further than the widget, which
    /// follows at the next flush, so the widget's coordinates would not do.
    [[nodiscard]] QPoint Position(const QMouseEvent& event) const {
        return mWindow.Content().mapFromGlobal(event.globalPosition().toPoint()) -
               QPoint(mControl.Left(), mControl.Top());
    }

    Canvas& mControl;
    QtWindow& mWindow;
    bool mDragging = false;
};

}  // namespace

QtCanvas::QtCanvas(Canvas& control, QtWindow& window)
    : ControlView(control, window, *new CanvasWidget(control, window)) {}

void QtCanvas::Show(Aspects changed) {
    if (changed.Has(Aspect::Cells) || changed.Has(Aspect::Style)) Widget().update();
}

}  // namespace sorbel
