#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/Dictionary.h"
#include "platform/FolderItem.h"
#include "ui/toolkit/Control.h"
#include "ui/toolkit/MenuItem.h"

namespace sorbel {

class Application;

/// A menu command; true: dealt with.
using MenuHandler = std::function<bool()>;
using MenuHandlers = Dictionary<String, MenuHandler>;

/// A window: its controls in creation order, its menu handlers and its events. Made with `std::make_shared`;
/// the application holds it while it is open.
class Window : public std::enable_shared_from_this<Window> {
  public:
    enum class Kind { Document, MovableModal };
    struct Size {
        int Width, Height;
    };

    Window(Application& app, String title, Size size);
    virtual ~Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    [[nodiscard]] Application& App() const { return mApp; }
    [[nodiscard]] virtual String ClassName() const = 0;
    [[nodiscard]] const std::vector<Control*>& Controls() const { return mControls; }
    [[nodiscard]] Control* FindControl(StringView name) const;

    // Fixed at design time.
    Kind Type = Kind::Document;
    Size Minimum{64, 64};
    Size Maximum{32000, 32000};
    bool HasCloseButton = true, HasMinimizeButton = true, HasMaximizeButton = false, Resizeable = false;
    bool Centred = false;

    [[nodiscard]] const String& Title() const { return mTitle; }
    void SetTitle(String title);
    /// The modified mark of the title bar.
    [[nodiscard]] bool ContentsChanged() const { return mContentsChanged; }
    void SetContentsChanged(bool changed);
    /// The file that the title bar stands for, or null.
    [[nodiscard]] const std::shared_ptr<FolderItem>& RepresentedFile() const { return mRepresentedFile; }
    void SetRepresentedFile(std::shared_ptr<FolderItem> f);

    /// What assistive technology tells of it besides the title, asked when it does.
    std::function<String()> Description;

    // Place on the screen and size of the content, in points.
    [[nodiscard]] int Left() const { return mLeft; }
    [[nodiscard]] int Top() const { return mTop; }
    [[nodiscard]] int Width() const { return mSize.Width; }
    [[nodiscard]] int Height() const { return mSize.Height; }

    /// The bar whose items act on this window; that of the application.
    [[nodiscard]] sorbel::MenuBar* MenuBar() const;
    void AddMenuHandler(StringView name, MenuHandler handler) { mMenuHandlers.Set(name, std::move(handler)); }
    [[nodiscard]] const MenuHandlers& Handlers() const { return mMenuHandlers; }

    /// Opens it, or brings it to the front.
    void Show();
    /// Asks `Event_CancelClose` and goes, unless that says no. False: it stays. While that asks the user, the
    /// window stays and comes to the front, so that there is one question. A window that is gone stays gone.
    bool Close(bool appQuitting = false);
    [[nodiscard]] bool IsOpen() const { return mOpen; }

    [[nodiscard]] Control* Focus() const { return mFocus; }
    void SetFocus(Control* control);

    void Attach(View* view) { mView = view; }

    // --- What a user does ---
    void UserMove(int left, int top);
    /// Moves and stretches the controls by their locks, then raises `Resizing` (a step of several) or
    /// `Resized`.
    void UserResize(Size size, bool resizing = false);
    void UserKeyDown(StringView key);
    void UserMouseDown(int x, int y);
    bool UserClose();
    void UserFocus(Control* control);

    // --- Events ---
    virtual void Event_Open() {}
    virtual void Event_Close() {}
    virtual bool Event_CancelClose(bool /*appQuitting*/) { return false; }
    virtual void Event_Resized() {}
    virtual void Event_Resizing() {}
    virtual bool Event_KeyDown(StringView /*key*/) { return false; }
    virtual bool Event_MouseDown(int /*x*/, int /*y*/) { return false; }
    virtual void Event_EnableMenuItems() {}

  private:
    friend class Application;
    friend class Control;
    void RaiseOpen();
    void SetSize(Size size);
    void Changed(Aspect aspect) const {
        if (mView) mView->Changed(aspect);
    }

    Application& mApp;
    std::vector<Control*> mControls;
    String mTitle;
    Size mSize;
    int mLeft = 0, mTop = 0;
    bool mContentsChanged = false;
    bool mOpen = false;
    bool mOpened = false;  // has been shown, whether or not it is still open
    bool mAsking = false;  // Event_CancelClose is running
    std::shared_ptr<FolderItem> mRepresentedFile;
    MenuHandlers mMenuHandlers;
    Control* mFocus = nullptr;
    View* mView = nullptr;
};

}  // namespace sorbel
