#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "ui/toolkit/Backend.h"
#include "ui/toolkit/MenuItem.h"
#include "ui/toolkit/Window.h"

namespace sorbel {

/// The program: its windows front to back, its menus and the handler of failures that nothing else has
/// caught.
class Application {
  public:
    explicit Application(Backend& backend) : mBackend(backend) {}
    virtual ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    [[nodiscard]] Backend& Desktop() const { return mBackend; }

    // --- Windows ---
    [[nodiscard]] int64_t WindowCount() const { return static_cast<int64_t>(mWindows.size()); }
    /// 0 is the frontmost.
    [[nodiscard]] Window& WindowAt(int64_t index) const;
    [[nodiscard]] Window* FrontWindow() const { return mWindows.empty() ? nullptr : mWindows.front().get(); }
    void BringToFront(Window& window);
    /// Shows the window and waits until it is closed, if the desktop can wait.
    void ShowModal(Window& window);

    // --- Menus ---
    std::unique_ptr<sorbel::MenuBar> MenuBar;
    void AddMenuHandler(StringView name, MenuHandler handler) { mMenuHandlers.Set(name, std::move(handler)); }
    /// Brings the enabled state of all items up to date for the front window.
    void EnableMenuItems();
    struct Chosen {
        bool Enabled = false;
        bool Handled = false;
    };
    /// A user's choice of an item: a refresh, then, if it is enabled, the item itself, the front window's
    /// handler, the application's, or what the toolkit does for it.
    Chosen Choose(MenuItem& item);

    // --- Start, documents, end ---
    /// The event loop begins: `Event_Open`, then a document for each file, or `Event_NewDocument` for none.
    void Start(const std::vector<std::shared_ptr<FolderItem>>& files);
    void OpenDocument(const std::shared_ptr<FolderItem>& item);
    /// The user asks for the running program again; true: handled.
    bool Reopen();
    void AppearanceChanged();
    /// Closes the windows front to back; the first that refuses stops it. True: the program is to end.
    bool Quit();
    [[nodiscard]] bool Ended() const { return mEnded; }

    /// Runs what came from outside, once the screen shows what it is about. A failure in it ends here: it is
    /// told, and the program goes on. That holds for every level: an inner one comes from the event loop of a
    /// dialog, which must not be unwound.
    void Perform(const std::function<void()>& operation);
    /// Tells the operations that `Perform` has begun apart; nothing outside of them.
    [[nodiscard]] std::optional<uint64_t> Operation() const {
        return mDepth > 0 ? std::optional(mOperation) : std::nullopt;
    }
    /// Class name of the failure that `Perform` caught last, and forgets it; empty if none.
    String TakeUnhandled();

    // --- Events ---
    virtual void Event_Open() {}
    virtual void Event_NewDocument() {}
    virtual void Event_OpenDocument(const std::shared_ptr<FolderItem>& /*item*/) {}
    virtual bool Event_HandleAppleEvent(StringView /*eventClass*/, StringView /*eventID*/) { return false; }
    virtual void Event_AppearanceChanged() {}

  private:
    friend class Window;
    void Opened(const std::shared_ptr<Window>& window);
    void Closed(Window& window);
    void Refresh(MenuItem& menu);
    [[nodiscard]] bool CanRun(const MenuItem& item) const;
    [[nodiscard]] bool CanEdit(EditCommand command) const;
    [[nodiscard]] TextEditor* FocusedEditor() const;
    static bool RunHandler(const MenuHandlers& handlers, StringView name);
    bool Run(MenuItem& item);
    void Report(const String& className, const String& message);
    void Release();

    Backend& mBackend;
    std::vector<std::shared_ptr<Window>> mWindows;  // front to back
    std::vector<std::shared_ptr<Window>> mGone;     // closed, while their handlers may still run
    MenuHandlers mMenuHandlers;
    int mDepth = 0;            // of Perform
    uint64_t mOperation = 0;   // the one begun last
    bool mRefreshing = false;  // EnableMenuItems is running
    bool mEnded = false;
    String mUnhandled;
};

}  // namespace sorbel
