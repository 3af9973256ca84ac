#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDropEvent>
#include <QHelpEvent>
#include <QMimeData>

#include "qt/Desktop.h"
#include "qt/QtMenus.h"
#include "qt/QtWindow.h"
#include "qt/Text.h"
#include "qt/Tips.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

namespace {

bool IsModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta ||
           key == Qt::Key_AltGr || key == Qt::Key_CapsLock || key == Qt::Key_NumLock;
}

}  // namespace

/// Watches the controls' widgets.
bool QtWindow::eventFilter(QObject* watched, QEvent* event) {
    ControlView* view = mRetired ? nullptr : ViewOf(watched);
    if (!view) return QMainWindow::eventFilter(watched, event);
    switch (event->type()) {
        case QEvent::FocusIn:
            if (MovesFocus(static_cast<QFocusEvent&>(*event))) mModel->UserFocus(&view->Model());
            break;
        case QEvent::ShortcutOverride:
            if (!view->YieldsMenuKeys() || !mMenus || !mMenus->Owns(static_cast<QKeyEvent&>(*event))) break;
            event->ignore();
            return true;
        case QEvent::ToolTip:
            return OfferTip(*view, static_cast<QHelpEvent&>(*event));
        default:
            break;
    }
    return QMainWindow::eventFilter(watched, event);
}

/// The user's doing, and not the widget's getting back what the window or the program showed meanwhile. That
/// may be a stand-in, whose control does not have the focus.
bool QtWindow::MovesFocus(const QFocusEvent& event) const {
    if (mFlushing || Desktop::The().IsLooking()) return false;
    const bool comesBack =
        event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason;
    return !comesBack || !mModel->Focus();
}

/// False: what the widget itself has to tell comes up, if anything.
bool QtWindow::OfferTip(const ControlView& view, QHelpEvent& event) {
    PlacedTip tip;
    Guard([&] { tip = view.TipAt(event.pos()); });
    if (tip.Text.isEmpty() && !view.Widget().toolTip().isEmpty()) return false;
    ShowTip(event, view.Widget(), tip);
    return true;
}

void QtWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::FontChange && !mRetired) TakeFont();
    if (event->type() != QEvent::ActivationChange || !isActiveWindow()) return;
    if (Desktop::The().IsLooking())
        Desktop::The().WhenFree(*this, [this] { TakeFront(); });
    else
        TakeFront();
}

/// Scripts may have come or gone while another window was active, and their keys with them.
void QtWindow::TakeFront() {
    if (mRetired || !isActiveWindow()) return;
    Application& app = mModel->App();
    if (app.FrontWindow() != mModel.get()) app.BringToFront(*mModel);
    app.Perform([&app] { app.EnableMenuItems(); });
}

/// Not every platform makes of these keys what it makes of the menu key.
void QtWindow::OpenContextMenu() {
    QWidget* const focused = focusWidget();
    if (!focused) return;
    const QPoint at = focused->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, focused->mapToGlobal(at));
    QCoreApplication::sendEvent(focused, &event);
}

/// The window decides. If it goes, it goes through the backend.
void QtWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (!mRetired) mModel->UserClose();
}

void QtWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void QtWindow::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    Application& app = mModel->App();
    const QByteArray uris = event->mimeData()->data(QStringLiteral("text/uri-list"));
    for (const auto& file : FilesFromUriList({uris.data(), static_cast<size_t>(uris.size())}))
        app.OpenDocument(file);
}

void QtWindow::keyPressEvent(QKeyEvent* event) {
    if (mRetired || IsModifier(event->key())) return QMainWindow::keyPressEvent(event);
    if (event->keyCombination() == (Qt::SHIFT | Qt::Key_F10)) return OpenContextMenu();
    if (event->keyCombination() == QKeyCombination(Qt::Key_F10) && mMenus) return mMenus->Open();
    const QString text = event->text().isEmpty() ? QKeySequence(event->key()).toString() : event->text();
    mModel->UserKeyDown(FromQt(text));
}

void QtWindow::mousePressEvent(QMouseEvent* event) {
    const QPoint at = mContent->mapFrom(this, event->position().toPoint());
    if (!mRetired && mContent->rect().contains(at)) {
        const QPoint units = mUnits.FromPixels(at);
        mModel->UserMouseDown(units.x(), units.y());
    }
}

void QtWindow::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    TakePlace();
}

void QtWindow::TakePlace() {
    if (mRetired || !isVisible()) return;
    const QPoint at = mContent->mapToGlobal(QPoint(0, 0));
    if (at.x() != mModel->Left() || at.y() != mModel->Top()) mModel->UserMove(at.x(), at.y());
}

void QtWindow::ContentResized() {
    if (mRetired || !isVisible()) return;
    TakePlace();
    const Window::Size size{mUnits.FromPixels(mContent->width()), mUnits.FromPixels(mContent->height())};
    if (size.Width == mModel->Width() && size.Height == mModel->Height()) return;
    mModel->UserResize(size, true);
    Flush();
}

}  // namespace sorbel
