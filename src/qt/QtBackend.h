#pragma once

#include <QObject>
#include <functional>
#include <map>

#include "qt/DesktopNotices.h"
#include "qt/DialogFolder.h"
#include "qt/QtTheme.h"
#include "ui/toolkit/Application.h"

class QSessionManager;

namespace sorbel {

class QtWindow;

/// The desktop through Qt Widgets.
class QtBackend : public QObject, public Backend {
  public:
    QtBackend();
    ~QtBackend() override;

    /// The program whose desktop this is; called once, before any window. It must outlive the event loop.
    void Serve(Application& app);
    /// The program goes on when its last window is closed, since it can be asked for a window again.
    bool StaysWithoutWindows = false;
    /// What is on the screen for a window, or null.
    [[nodiscard]] QtWindow* ViewOf(const Window* window) const;

    void WindowShown(Window& window) override;
    void WindowClosed(Window& window) override;
    void RunModal(Window& window) override;
    void MenusChanged() override;
    void ShowWaiting() override;

    void MsgBox(StringView text) override;
    const MessageDialogButton* Show(const MessageDialog& dialog, Window* within) override;
    [[nodiscard]] bool LeftByEscape() const override { return mLeftByEscape; }
    std::shared_ptr<FolderItem> Show(const OpenDialog& dialog, Window* within) override;
    std::shared_ptr<FolderItem> AskSaveFile(StringView filter, StringView defaultName) override;
    MenuItem* PopUp(MenuItem& menu, int x, int y) override;

    void SetBusy(bool busy) override;
    [[nodiscard]] bool LookForEscape() override;
    void Beep() override;
    void Notify(StringView title, StringView text) override;
    void Launch(const FolderItem& item) override;
    [[nodiscard]] Color Theme(SystemColor color) const override { return mTheme.System(color); }
    [[nodiscard]] std::optional<Color> NamedColor(StringView name) const override {
        return QtTheme::Named(name);
    }
    void Edit(TextEditor& editor, EditCommand command) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    class Waiting;
    [[nodiscard]] QWidget* ParentFor(Window* within) const;
    /// Runs a file dialog that begins in the folder given.
    std::shared_ptr<FolderItem> AskFile(
        const std::function<std::shared_ptr<FolderItem>(const QString& folder)>& ask);
    void AppearanceChanged();
    void EndIfDone();
    void ShowBusy();
    void AskBeforeLogout(QSessionManager& session);

    Application* mApp = nullptr;
    QtTheme mTheme;
    DesktopNotices mNotices{QDBusConnection::sessionBus()};
    std::map<const Window*, QtWindow*> mWindows;
    DialogFolder mFolder;
    int mDialogs = 0;  ///< under way
    int mBusy = 0;     ///< pieces of work that go on, one inside the other
    bool mShowsBusy = false;
    bool mAppearanceStale = false;
    bool mLeftByEscape = false;  ///< the last message dialog
    bool mEndsUnasked = false;   ///< with the session, which has no time for a question
};

}  // namespace sorbel
