#include "qt/QtCanvas.h"

#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QShortcut>

#include "qt/QtGraphics.h"
#include "qt/QtWindow.h"

namespace sorbel {

namespace {

constexpr int KeyStep = 10;  // units that a key moves a splitter

class CanvasWidget : public QWidget {
  public:
    CanvasWidget(Canvas& control, QtWindow& window)
        : QWidget(&window.Content()), mControl(control), mWindow(window) {
        if (IsButton()) setFocusPolicy(Qt::TabFocus);
        if (control.Cursor() == MouseCursor::SplitterEastWest) setCursor(Qt::SplitHCursor);
        if (control.Cursor() == MouseCursor::SplitterNorthSouth) setCursor(Qt::SplitVCursor);
        if (IsSplitter()) LetKeysReach();
    }

    /// A press on it does something; a splitter, which has a cursor of its own, is for dragging.
    [[nodiscard]] bool IsButton() const { return mControl.MouseDown && !IsSplitter(); }
    [[nodiscard]] bool IsSplitter() const { return mControl.Cursor() != MouseCursor::Standard; }
    void Press() {
        mControl.UserMouseDown(mControl.Width() / 2, mControl.Height() / 2);
        mControl.UserMouseUp(mControl.Width() / 2, mControl.Height() / 2);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        {
            QtGraphics g(painter, rect(), mWindow.Units());
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
        const int key = event->key();
        if (IsButton() && (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter))
            Press();
        else if (!IsSplitter() || !(DragBy(key) || GoBack(key)))
            QWidget::keyPressEvent(event);
    }

  private:
    /// Splitters are no stops on the way from field to field; F8 leads from one to the next.
    void LetKeysReach() {
        auto* shortcut = new QShortcut(Qt::Key_F8, this);
        const auto reached = [this] {
            auto* const other = dynamic_cast<CanvasWidget*>(window()->focusWidget());
            mBefore = other && other->IsSplitter() ? other->mBefore.data() : window()->focusWidget();
            setFocus(Qt::ShortcutFocusReason);
        };
        connect(shortcut, &QShortcut::activated, this, reached);
        connect(shortcut, &QShortcut::activatedAmbiguously, this, reached);
    }

    bool DragBy(int key) {
        const bool sideways = mControl.Cursor() == MouseCursor::SplitterEastWest;
        const int forth = sideways ? Qt::Key_Right : Qt::Key_Down;
        const int back = sideways ? Qt::Key_Left : Qt::Key_Up;
        if (key != forth && key != back) return false;
        const int step = key == forth ? KeyStep : -KeyStep;
        if (!mControl.UserMouseDown(0, 0)) return true;
        mControl.UserMouseDrag(sideways ? step : 0, sideways ? 0 : step);
        mControl.UserMouseUp(0, 0);
        return true;
    }

    bool GoBack(int key) {
        if (!mBefore || (key != Qt::Key_Escape && key != Qt::Key_Return && key != Qt::Key_Enter))
            return false;
        mBefore->setFocus(Qt::ShortcutFocusReason);
        return true;
    }

    /// In the control's own coordinates. A drag may have moved the control further than the widget, which
    /// follows at the next flush, so the widget's coordinates would not do.
    [[nodiscard]] QPoint Position(const QMouseEvent& event) const {
        const QPoint at = mWindow.Content().mapFromGlobal(event.globalPosition().toPoint());
        return mWindow.Units().FromPixels(at) - QPoint(mControl.Left(), mControl.Top());
    }

    Canvas& mControl;
    QtWindow& mWindow;
    QPointer<QWidget> mBefore;  ///< where the focus was before the keys came here
    bool mDragging = false;
};

/// What a drawn control is to assistive technology.
class CanvasReader : public QAccessibleWidget {
  public:
    explicit CanvasReader(CanvasWidget& canvas)
        : QAccessibleWidget(&canvas, canvas.IsSplitter() ? QAccessible::Splitter
                                     : canvas.IsButton() ? QAccessible::ButtonMenu
                                                         : QAccessible::Graphic),
          mCanvas(canvas) {}

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (mCanvas.IsButton()) names += pressAction();
        return names;
    }
    void doAction(const QString& name) override {
        if (name != pressAction()) return QAccessibleWidget::doAction(name);
        if (mCanvas.IsButton()) mCanvas.Press();
    }

  private:
    CanvasWidget& mCanvas;
};

QAccessibleInterface* MakeReader(const QString& /*className*/, QObject* object) {
    auto* canvas = dynamic_cast<CanvasWidget*>(object);
    return canvas ? new CanvasReader(*canvas) : nullptr;
}

}  // namespace

QtCanvas::QtCanvas(Canvas& control, QtWindow& window)
    : ControlView(control, window, *new CanvasWidget(control, window)) {
    static const bool read = (QAccessible::installFactory(&MakeReader), true);
    (void)read;
}

void QtCanvas::Show(Aspects changed) {
    if (changed.Has(Aspect::Cells) || changed.Has(Aspect::Style)) Widget().update();
}

}  // namespace sorbel
