#include "qt/QtBackend.h"

#include <QApplication>
#include <QDesktopServices>
#include <QEventLoop>
#include <QFileOpenEvent>
#include <QSessionManager>
#include <QUrl>

#include "platform/Exceptions.h"
#include "qt/Desktop.h"
#include "qt/ProgramIcon.h"
#include "qt/QtDialogs.h"
#include "qt/QtMenus.h"
#include "qt/QtWindow.h"
#include "qt/Text.h"
#include "qt/TextReader.h"
#include "qt/WindowReader.h"
#include "ui/toolkit/TextEditor.h"

namespace sorbel {

/// A dialog is under way, so the program does not end even if it has no window.
class QtBackend::Waiting {
  public:
    explicit Waiting(QtBackend& backend) : mBackend(backend) {
        ++mBackend.mDialogs;
        mBackend.ShowBusy();
    }
    ~Waiting() {
        // What the dialog has uncovered is painted now, since long work may follow. Still as its guest, so
        // that an end of the program that has been asked for waits until that has been done.
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        --mBackend.mDialogs;
        mBackend.ShowBusy();
        mBackend.EndIfDone();
    }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

  private:
    QtBackend& mBackend;
};

QtBackend::QtBackend() {
    QApplication::setQuitOnLastWindowClosed(false);
    qApp->installEventFilter(this);
    ReadTextsForReadingOnly();
    ReadWindowsByModel();
    connect(qApp, &QGuiApplication::commitDataRequest, this, &QtBackend::AskBeforeLogout,
            Qt::DirectConnection);
}

QtBackend::~QtBackend() {
    for (const auto& [window, view] : mWindows)
        delete view;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);  // windows closed at the very end
}

void QtBackend::Serve(Application& app) {
    mApp = &app;
    QApplication::setWindowIcon(ProgramIcon());
}

QtWindow* QtBackend::ViewOf(const Window* window) const {
    const auto found = mWindows.find(window);
    return found == mWindows.end() ? nullptr : found->second;
}

void QtBackend::WindowShown(Window& window) {
    QWidget* front = QApplication::activeWindow();
    auto* view = new QtWindow(window.shared_from_this(), mTheme);
    mWindows[&window] = view;
    view->Open(front);
}

void QtBackend::WindowClosed(Window& window) {
    const auto found = mWindows.find(&window);
    if (found == mWindows.end()) return;
    QtWindow* const view = found->second;
    mWindows.erase(found);
    view->Retire();
    Desktop::The().DeleteWhenIdle(view);
    EndIfDone();
}

/// Without a window there is no menu bar here. A program that nothing could bring back then, or that was told
/// to quit, ends. Asked later, since a window that goes may be about to be replaced by another.
void QtBackend::EndIfDone() {
    Desktop::The().WhenFree(*this, [this] {
        if (!mWindows.empty() || mDialogs > 0) return;
        if (!StaysWithoutWindows || (mApp && mApp->Ended())) QCoreApplication::quit();
    });
}

/// Where nobody can be asked any more, what is unsaved is left to the journals.
void QtBackend::AskBeforeLogout(QSessionManager& session) {
    mEndsUnasked = !session.allowsInteraction();
    if (!mApp || mEndsUnasked) return;
    const bool ended = mApp->Quit();
    session.release();
    if (!ended) session.cancel();
}

void QtBackend::RunModal(Window& window) {
    QtWindow* view = ViewOf(&window);
    if (!view) return;
    QEventLoop loop;
    connect(view, &QtWindow::Retired, &loop, &QEventLoop::quit);
    loop.exec();
}

void QtBackend::MenusChanged() {
    for (const auto& [window, view] : mWindows)
        view->MenusChanged();
}

void QtBackend::ShowWaiting() {
    Desktop::The().ShowWaiting();
}

QWidget* QtBackend::ParentFor(Window* within) const {
    return within ? ViewOf(within) : mApp ? ViewOf(mApp->FrontWindow()) : nullptr;
}

void QtBackend::MsgBox(StringView text) {
    const Waiting waiting(*this);
    RunMessage(text, ParentFor(nullptr));
}

const MessageDialogButton* QtBackend::Show(const MessageDialog& dialog, Window* within) {
    const Waiting waiting(*this);
    const QString title = within ? ToQt(within->Title()) : QCoreApplication::applicationName();
    const MessageAnswer answer = RunMessage(dialog, title, ParentFor(within), within != nullptr);
    mLeftByEscape = answer.ByEscape;
    return answer.Button;
}

std::shared_ptr<FolderItem> QtBackend::Show(const OpenDialog& dialog, Window* within) {
    return AskFile(
        [&](const QString& folder) { return RunOpen(dialog, folder, ParentFor(within), within != nullptr); });
}

std::shared_ptr<FolderItem> QtBackend::AskSaveFile(StringView filter, StringView defaultName) {
    return AskFile(
        [&](const QString& folder) { return RunSave(filter, defaultName, folder, ParentFor(nullptr)); });
}

std::shared_ptr<FolderItem> QtBackend::AskFile(
    const std::function<std::shared_ptr<FolderItem>(const QString&)>& ask) {
    const Waiting waiting(*this);
    std::shared_ptr<FolderItem> file = ask(mFolder.First(mApp));
    if (file) mFolder.Used(*file);
    return file;
}

MenuItem* QtBackend::PopUp(MenuItem& menu, int x, int y) {
    return RunPopUp(menu, QPoint(x, y), ParentFor(nullptr));
}

void QtBackend::SetBusy(bool busy) {
    mBusy += busy ? 1 : -1;
    ShowBusy();
}

/// The cursor says so in all windows, but not while a dialog wants to be answered.
void QtBackend::ShowBusy() {
    const bool shows = mBusy > 0 && mDialogs == 0;
    if (shows == std::exchange(mShowsBusy, shows)) return;
    if (shows)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

bool QtBackend::LookForEscape() {
    return Desktop::The().LookForEscape();
}

void QtBackend::Beep() {
    QApplication::beep();
}

void QtBackend::Notify(StringView title, StringView text) {
    mNotices.Show(ToQt(title), ToQt(text));
}

void QtBackend::Launch(const FolderItem& item) {
    const QUrl url = QUrl::fromEncoded(QByteArray::fromStdString(ToUri(item)));
    if (!item.Exists() || !QDesktopServices::openUrl(url)) throw IOException("The file could not be opened.");
}

void QtBackend::Edit(TextEditor& editor, EditCommand command) {
    ShowWaiting();
    const QtWindow* window = ViewOf(&editor.Owner());
    if (ControlView* view = window ? window->ViewOf(editor) : nullptr) view->Edit(command);
}

/// Sees the events of the program itself.
bool QtBackend::eventFilter(QObject* watched, QEvent* event) {
    if (watched != qApp || !mApp) return false;
    if (event->type() == QEvent::Quit && mEndsUnasked) {
        QCoreApplication::exit();
        return true;
    }
    if (event->type() == QEvent::ApplicationPaletteChange && !std::exchange(mAppearanceStale, true))
        Desktop::The().WhenFree(*this, [this] { AppearanceChanged(); });
    if (event->type() == QEvent::FileOpen) {
        const auto file = FileFromUri(static_cast<QFileOpenEvent*>(event)->url().toEncoded().toStdString());
        Desktop::The().WhenFree(*this, [this, file] { mApp->OpenDocument(file); });
    }
    return false;
}

void QtBackend::AppearanceChanged() {
    mAppearanceStale = false;
    mApp->AppearanceChanged();
    for (const auto& [window, view] : mWindows)
        view->AppearanceChanged();
}

}  // namespace sorbel
