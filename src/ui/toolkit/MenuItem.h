#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/Text.h"

namespace sorbel {

/// Items that a platform may put into a place of its own.
enum class MenuRole { Plain, Quit, About };

/// What the focused text control does for an item of the Edit menu.
enum class EditCommand { None, Cut, Copy, Paste, Clear, SelectAll };

/// An item of a menu, or a menu with items. A caption of "-" is a separator; "&" marks the mnemonic.
class MenuItem : public std::enable_shared_from_this<MenuItem> {
  public:
    explicit MenuItem(String name, String text, String shortcut = {}, bool autoEnabled = true)
        : Shortcut(std::move(shortcut)),
          AutoEnabled(autoEnabled),
          mName(std::move(name)),
          mText(std::move(text)) {}
    virtual ~MenuItem() = default;
    MenuItem(const MenuItem&) = delete;
    MenuItem& operator=(const MenuItem&) = delete;

    [[nodiscard]] const String& Name() const { return mName; }  ///< key of handler dispatch; may be empty
    [[nodiscard]] const String& Text() const { return mText; }
    [[nodiscard]] bool IsSeparator() const { return mText == "-"; }

    String Shortcut;  ///< such as "Cmd+Shift+Z"; empty for none
    bool AutoEnabled = true;
    bool Enabled = true;
    bool Checkable = false;  ///< has a check mark, on or off; one that is on shows in any item
    bool Checked = false;
    bool Visible = true;
    int64_t Index = 0;
    MenuRole Role = MenuRole::Plain;
    EditCommand Edit = EditCommand::None;

    [[nodiscard]] size_t Count() const { return mItems.size(); }
    [[nodiscard]] MenuItem& Item(size_t index) const { return *mItems.at(index); }
    MenuItem& Append(std::unique_ptr<MenuItem> item);
    /// Takes an item out. One that is being chosen lives on until its command has ended.
    void Remove(size_t index);
    /// The first item of that name in this menu or below, or null.
    [[nodiscard]] MenuItem* FindByName(StringView name) const;

    /// What the item does by itself when it is chosen; true: the command is dealt with and no handler is
    /// asked.
    virtual bool Event_Action() { return false; }
    /// The item acts by itself, so a refresh leaves `Enabled` as its maker set it.
    [[nodiscard]] virtual bool HasAction() const { return false; }

  private:
    String mName;
    String mText;
    std::vector<std::shared_ptr<MenuItem>> mItems;
};

/// The menus, in the order on screen. Children of the root are the menus.
class MenuBar : public MenuItem {
  public:
    MenuBar() : MenuItem({}, {}) {}
};

}  // namespace sorbel
