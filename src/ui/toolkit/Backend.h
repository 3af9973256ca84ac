#pragma once

#include <memory>
#include <optional>

#include "platform/Color.h"
#include "platform/FolderItem.h"
#include "platform/Text.h"

namespace sorbel {

class Application;
class MenuItem;
class MessageDialog;
class OpenDialog;
class TextEditor;
class Window;
enum class EditCommand;
struct MessageDialogButton;

/// Colours of the toolkit itself; the rest go by name.
enum class SystemColor { Text, DisabledText, Highlight, Fill };

/// The one door to the desktop. All that the program shows, asks or hands over outside its windows' controls
/// goes through here, so that the whole program also runs without a desktop.
class Backend {
  public:
    virtual ~Backend() = default;

    // --- Windows ---
    /// The window is shown for the first time: attach to it and its controls.
    virtual void WindowShown(Window& window) = 0;
    /// The window is gone: detach from it and its controls.
    virtual void WindowClosed(Window& window) = 0;
    /// Returns when the window has been closed, if the desktop can wait.
    virtual void RunModal(Window& window) = 0;
    /// Enabled states, check marks or generated items may have changed.
    virtual void MenusChanged() = 0;
    /// Brings all that has changed onto the screen now. Asked before anything that a user does is carried
    /// out, since users act on what they see. Without a screen there is nothing to be behind.
    virtual void ShowWaiting() {}

    // --- Dialogs; `within` is the window whose sheet it is, or null ---
    /// Tells of a failure.
    virtual void MsgBox(StringView text) = 0;
    virtual const MessageDialogButton* Show(const MessageDialog& dialog, Window* within) = 0;
    /// Whether the user left the last message dialog with the Escape key, whichever button that stood for.
    [[nodiscard]] virtual bool LeftByEscape() const { return false; }
    virtual std::shared_ptr<FolderItem> Show(const OpenDialog& dialog, Window* within) = 0;
    /// Where to export to.
    virtual std::shared_ptr<FolderItem> AskSaveFile(StringView filter, StringView defaultName) = 0;
    /// A menu at a point of the screen; the chosen item or null.
    virtual MenuItem* PopUp(MenuItem& menu, int x, int y) = 0;

    // --- Desktop ---
    /// Work that may take long begins (true) or ends (false), each end after its begin; pairs may nest. A
    /// dialog that comes up meanwhile is answered as ever. See `Busy`.
    virtual void SetBusy(bool busy) = 0;
    /// Called now and then by work that has gone on for a while: brings the screen up to date and tells the
    /// desktop that the program lives. What the user does meanwhile is dropped, and what the desktop asks for
    /// waits until the work is done. True if Escape was pressed since the last time.
    [[nodiscard]] virtual bool LookForEscape() { return false; }
    virtual void Beep() = 0;
    /// A word to the user that asks nothing, takes no focus and does not wait.
    virtual void Notify(StringView title, StringView text) = 0;
    /// Shows a file or folder or starts an application; fails with IOException.
    virtual void Launch(const FolderItem& item) = 0;
    [[nodiscard]] virtual Color Theme(SystemColor color) const = 0;
    /// A semantic colour of the theme by the name that it has there; letter case is ignored. Nothing if
    /// unknown.
    [[nodiscard]] virtual std::optional<Color> NamedColor(StringView name) const = 0;
    /// Cut, copy and the like in a focused text.
    virtual void Edit(TextEditor& editor, EditCommand command) = 0;
};

}  // namespace sorbel
