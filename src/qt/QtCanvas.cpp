#include "qt/QtCanvas.h"

#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QShortcut>
#include <algorithm>

#include "qt/QtGraphics.h"
#include "qt/QtWindow.h"

namespace sorbel {

namespace {

constexpr int KeyStep = 10;  // units that a key moves a splitter
constexpr Qt::Key SplitterKey = Qt::Key_F8;

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
    /// What keys and assistive technology do with a splitter.
    [[nodiscard]] Canvas::Travel Way() const { return mControl.Way().value_or(Canvas::Travel{}); }
    void DragBy(int step) {
        const bool sideways = mControl.Cursor() == MouseCursor::SplitterEastWest;
        if (!mControl.UserMouseDown(0, 0)) return;
        mControl.UserMouseDrag(sideways ? step : 0, sideways ? 0 : step);
        mControl.UserMouseUp(0, 0);
    }
    void Reach() {
        auto* const other = dynamic_cast<CanvasWidget*>(window()->focusWidget());
        mBefore = other && other->IsSplitter() ? other->mBefore.data() : window()->focusWidget();
        setFocus(Qt::ShortcutFocusReason);
    }
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
        else if (!IsSplitter() || !(DragByKey(key) || GoBack(key)))
            QWidget::keyPressEvent(event);
    }

  private:
    /// Splitters are no stops on the way from field to field; F8 leads from one to the next.
    void LetKeysReach() {
        auto* shortcut = new QShortcut(SplitterKey, this);
        connect(shortcut, &QShortcut::activated, this, &CanvasWidget::Reach);
        connect(shortcut, &QShortcut::activatedAmbiguously, this, &CanvasWidget::Reach);
    }

    bool DragByKey(int key) {
        const bool sideways = mControl.Cursor() == MouseCursor::SplitterEastWest;
        if (key == (sideways ? Qt::Key_Right : Qt::Key_Down))
            DragBy(KeyStep);
        else if (key == (sideways ? Qt::Key_Left : Qt::Key_Up))
            DragBy(-KeyStep);
        else if (key == Qt::Key_Home)
            DragBy(Way().Least - Way().Position);
        else if (key == Qt::Key_End)
            DragBy(Way().Most - Way().Position);
        else
            return false;
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
    CanvasReader(CanvasWidget& canvas, QAccessible::Role role)
        : QAccessibleWidget(&canvas, role), mCanvas(canvas) {}

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (mCanvas.IsButton()) names += pressAction();
        return names;
    }
    void doAction(const QString& name) override {
        if (name != pressAction()) return QAccessibleWidget::doAction(name);
        if (mCanvas.IsButton()) mCanvas.Press();
    }

  protected:
    CanvasWidget& mCanvas;
};

/// A splitter is a value that can be set, and can have the keyboard although Tab passes it by.
class SplitterReader : public CanvasReader, public QAccessibleValueInterface {
  public:
    explicit SplitterReader(CanvasWidget& canvas) : CanvasReader(canvas, QAccessible::Splitter) {}

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = CanvasReader::state();
        state.focusable = true;
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
        return CanvasReader::interface_cast(type);
    }
    [[nodiscard]] QStringList actionNames() const override {
        return CanvasReader::actionNames() +
               QStringList{setFocusAction(), increaseAction(), decreaseAction()};
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& name) const override {
        if (name != setFocusAction()) return CanvasReader::keyBindingsForAction(name);
        return {QKeySequence(SplitterKey).toString()};
    }
    void doAction(const QString& name) override {
        if (name == setFocusAction()) return mCanvas.Reach();
        if (name == increaseAction()) return mCanvas.DragBy(KeyStep);
        if (name == decreaseAction()) return mCanvas.DragBy(-KeyStep);
        CanvasReader::doAction(name);
    }

    [[nodiscard]] QVariant currentValue() const override { return mCanvas.Way().Position; }
    [[nodiscard]] QVariant minimumValue() const override { return mCanvas.Way().Least; }
    [[nodiscard]] QVariant maximumValue() const override { return mCanvas.Way().Most; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }
    void setCurrentValue(const QVariant& value) override {
        const Canvas::Travel way = mCanvas.Way();
        mCanvas.DragBy(std::clamp(value.toInt(), way.Least, way.Most) - way.Position);
    }
};

QAccessibleInterface* MakeReader(const QString& /*className*/, QObject* object) {
    auto* canvas = dynamic_cast<CanvasWidget*>(object);
    if (!canvas) return nullptr;
    if (canvas->IsSplitter()) return new SplitterReader(*canvas);
    return new CanvasReader(*canvas, canvas->IsButton() ? QAccessible::ButtonMenu : QAccessible::Graphic);
}

}  // namespace

QtCanvas::QtCanvas(Canvas& control, QtWindow& window)
    : ControlView(control, window, *new CanvasWidget(control, window)), mControl(control) {
    static const bool read = (QAccessible::installFactory(&MakeReader), true);
    (void)read;
}

void QtCanvas::Show(Aspects changed) {
    if (changed.Has(Aspect::Cells) || changed.Has(Aspect::Style)) Widget().update();
    if (changed.Has(Aspect::Geometry)) TellPosition();
}

void QtCanvas::TellPosition() {
    const std::optional<Canvas::Travel> way = mControl.Way();
    if (!way || std::exchange(mShownPosition, way->Position) == way->Position) return;
    QAccessibleValueChangeEvent event(&Widget(), way->Position);
    QAccessible::updateAccessibility(&event);
}

}  // namespace sorbel
