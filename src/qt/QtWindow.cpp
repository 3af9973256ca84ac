#include "qt/QtWindow.h"

#include <QDialog>
#include <QMenuBar>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "qt/Desktop.h"
#include "qt/Text.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Listbox.h"

namespace sorbel {

namespace {

/// What lies below the menu bar and holds the controls.
class ContentWidget : public QWidget {
  public:
    explicit ContentWidget(QtWindow& window) : QWidget(&window), mWindow(window) {}
    [[nodiscard]] QSize sizeHint() const override {
        const DesignUnits& units = mWindow.Units();
        return {units.ToPixels(mWindow.Model().Width()), units.ToPixels(mWindow.Model().Height())};
    }

  protected:
    void resizeEvent(QResizeEvent*) override { mWindow.ContentResized(); }

  private:
    QtWindow& mWindow;
};

}  // namespace

QtWindow::QtWindow(std::shared_ptr<Window> window, QtTheme& theme)
    : mModel(std::move(window)), mTheme(theme), mUnits(font()), mContent(new ContentWidget(*this)) {
    setCentralWidget(mContent);
    setAcceptDrops(true);
    if (mModel->Type == Window::Kind::Document && mModel->MenuBar())
        mMenus = std::make_unique<QtMenus>(*menuBar(), mModel->App(), [this] { MenusChanged(); });
    SetUpFrame();
    MakeControls();
    mModel->Attach(this);
}

QtWindow::~QtWindow() {
    Retire();
}

void QtWindow::SetUpFrame() {
    const Window& model = *mModel;
    Qt::WindowFlags flags = model.Type == Window::Kind::MovableModal ? Qt::Dialog : Qt::Window;
    flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    flags.setFlag(Qt::WindowCloseButtonHint, model.HasCloseButton);
    flags.setFlag(Qt::WindowMinimizeButtonHint, model.HasMinimizeButton);
    flags.setFlag(Qt::WindowMaximizeButtonHint, model.HasMaximizeButton);
    setWindowFlags(flags);
    if (model.Type == Window::Kind::MovableModal) setWindowModality(Qt::ApplicationModal);
    SetLimits();
}

/// A window that is larger than the screen cannot be used, so its contents are rather cut.
void QtWindow::SetLimits() {
    const Window& model = *mModel;
    if (!model.Resizeable) return mContent->setFixedSize(mContent->sizeHint());
    const auto pixels = [this](const Window::Size& size) {
        return QSize(mUnits.ToPixels(size.Width), mUnits.ToPixels(size.Height));
    };
    const QSize room = screen()->availableSize() * 9 / 10;
    mContent->setMinimumSize(pixels(model.Minimum).boundedTo(room));
    mContent->setMaximumSize(pixels(model.Maximum).boundedTo({QWIDGETSIZE_MAX, QWIDGETSIZE_MAX}));
}

/// The desktop's font is another one now.
void QtWindow::TakeFont() {
    const DesignUnits units(font());
    if (units.Factor() == mUnits.Factor()) return;
    mUnits = units;
    SetLimits();
    for (const auto& view : mViews) {
        view->Changed(Aspect::Geometry);
        view->Changed(Aspect::Cells);
    }
    Fit();
    ContentResized();
}

/// As large as the model, but not larger than the screen.
void QtWindow::Fit() {
    resize(sizeHint().boundedTo(screen()->availableSize()));
}

/// Controls lie on one another in the order in which they were made, and take the focus in tab order.
void QtWindow::MakeControls() {
    std::vector<ControlView*> order;
    for (Control* control : mModel->Controls()) {
        mViews.push_back(MakeControlView(*control, *this));
        order.push_back(mViews.back().get());
    }
    std::ranges::stable_sort(order, {}, [](const ControlView* view) { return view->Model().TabIndex(); });
    for (size_t index = 1; index < order.size(); ++index)
        setTabOrder(&order[index - 1]->Widget(), &order[index]->Widget());
    for (const auto& view : mViews)
        view->MeetOthers();
}

/// The scripts' keys are known before the desktop makes the window the active one.
void QtWindow::Open(const QWidget* front) {
    if (mMenus) mModel->App().Perform([this] { mModel->App().EnableMenuItems(); });
    Flush();
    Fit();
    if (!mModel->Resizeable) setFixedSize(sizeHint());
    if (mModel->Centred) move(screen()->availableGeometry().center() - QPoint(width(), height()) / 2);
    if (front && mModel->Type == Window::Kind::MovableModal) {
        (void)winId();  // makes the native window
        windowHandle()->setTransientParent(front->windowHandle());
    }
    show();
    TakePlace();
}

void QtWindow::Retire() {
    if (std::exchange(mRetired, true)) return;
    mModel->Attach(nullptr);
    for (const auto& view : mViews)
        view->Model().Attach(nullptr);
    Desktop::The().Forget(*this);
    CloseGuests();
    hide();
    Q_EMIT Retired();
}

/// Whoever waits for an answer to them goes on without one.
void QtWindow::CloseGuests() {
    for (QWidget* guest : findChildren<QWidget*>()) {
        if (!guest->isWindow() || !guest->isVisible()) continue;
        if (auto* const dialog = qobject_cast<QDialog*>(guest))
            dialog->done(QDialog::Rejected);
        else
            guest->close();
    }
}

ControlView* QtWindow::ViewOf(const Control& control) const {
    const auto found = std::ranges::find(mViews, &control, [](const auto& view) { return &view->Model(); });
    return found == mViews.end() ? nullptr : found->get();
}

ControlView* QtWindow::ViewOf(const QObject* widget) const {
    const auto found =
        std::ranges::find(mViews, widget, [](const auto& view) -> const QObject* { return &view->Widget(); });
    return found == mViews.end() ? nullptr : found->get();
}

void QtWindow::Changed(Aspect aspect) {
    mChanged.Add(aspect);
    ScheduleFlush();
}

void QtWindow::ScheduleFlush() {
    if (mScheduled || mRetired) return;
    mScheduled = true;
    Desktop::The().Wait(*this);
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (mScheduled) Flush();
        },
        Qt::QueuedConnection);
}

void QtWindow::Flush() {
    if (mFlushing || mRetired) return;
    mScheduled = false;
    Desktop::The().Forget(*this);
    mFlushing = true;
    for (const auto& view : mViews)
        view->Flush();
    if (std::exchange(mMenusStale, false) && mMenus) mMenus->Update();
    ShowWindow(std::exchange(mChanged, Aspects()));
    mFlushing = false;
    for (const auto& operation : std::exchange(mAfterFlush, {}))
        operation();
}

void QtWindow::ShowWindow(Aspects changed) {
    if (changed.Has(Aspect::Modified) || changed.Has(Aspect::Text)) {
        const auto& file = mModel->RepresentedFile();
        setWindowFilePath(file ? ToQt(file->NativePath()) : QString());
        setWindowTitle(ToQt(mModel->Title()).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")) +
                       QStringLiteral("[*]"));
        setWindowModified(mModel->ContentsChanged());
    }
    ShowFocus();
    if (changed.Has(Aspect::Order) && isVisible() && !isActiveWindow()) {
        raise();
        activateWindow();
    }
}

/// A focused control that is disabled for a while gets the focus back. Until then its keys go to the list.
void QtWindow::ShowFocus() {
    const ControlView* view = mModel->Focus() ? ViewOf(*mModel->Focus()) : nullptr;
    if (!view) return;
    const bool usable = view->Widget().isEnabled() && view->Widget().isVisibleTo(mContent);
    QWidget* const wanted = usable ? &view->Widget() : StandIn();
    QWidget* const present = focusWidget();
    const bool inMenus = present && present != mContent && !mContent->isAncestorOf(present);
    if (present == wanted || inMenus) return;
    wanted->setFocus();
}

/// What takes the keys that a disabled control would have had.
QWidget* QtWindow::StandIn() const {
    for (const auto& view : mViews)
        if (dynamic_cast<const Listbox*>(&view->Model()) && view->Widget().isEnabled() &&
            view->Widget().isVisibleTo(mContent))
            return &view->Widget();
    return mContent;
}

void QtWindow::Guard(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const std::exception&) {
        const auto tell = [this, failure = std::current_exception()] {
            mModel->App().Perform([&failure] { std::rethrow_exception(failure); });
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    }
}

void QtWindow::MenusChanged() {
    mMenusStale = true;
    ScheduleFlush();
}

void QtWindow::AppearanceChanged() {
    for (const auto& view : mViews) {
        view->Changed(Aspect::Style);
        view->Changed(Aspect::Cells);
    }
}

void QtWindow::PopUpEditMenu(const QPoint& at, const MenuChoices& above) {
    Application& app = mModel->App();
    MenuItem* edit = mModel->MenuBar() ? mModel->MenuBar()->FindByName("EditMenu") : nullptr;
    if (!edit) return;
    app.Perform([&app] { app.EnableMenuItems(); });
    if (MenuItem* chosen = RunPopUp(*edit, at, this, above)) app.Choose(*chosen);
    MenusChanged();
}

}  // namespace sorbel
