#pragma once

#include <QKeySequence>
#include <QMenuBar>
#include <functional>
#include <vector>

#include "ui/toolkit/MenuItem.h"

class QKeyEvent;
class QMenu;

namespace sorbel {

class Application;

/// The keys of a shortcut such as "Cmd+Shift+Z" or "CMD + SHIFT+1"; Cmd is Ctrl here. Empty for none.
[[nodiscard]] QKeySequence ShortcutKeys(StringView shortcut);

/// Shows a tree of items as menus. Items may be generated anew at any refresh, so an action knows its item by
/// the way to it only.
class MenuTree {
  public:
    using Chooser = std::function<void(MenuItem& item)>;
    MenuTree(std::function<MenuItem*()> root, Chooser choose)
        : mRoot(std::move(root)), mChoose(std::move(choose)) {}

    /// Brings the actions of a menu or menu bar and those below in line with the items. Actions stay where
    /// the items are of the same kinds.
    void Update(QWidget& menu);
    /// Shows which items are enabled, or, while nobody looks, enables all of them.
    void ShowEnabled(QWidget& menu, bool asTheyAre);

  private:
    using Path = QList<int>;
    void Update(QWidget& menu, const MenuItem& items, const Path& path);
    void Rebuild(QWidget& menu, const MenuItem& items, const Path& path);
    [[nodiscard]] MenuItem* Find(const QAction& action) const;

    std::function<MenuItem*()> mRoot;
    Chooser mChoose;
};

/// The menu bar of a window. Its actions stay enabled, since a disabled one would lose its keys; whether an
/// item is enabled is found out when it is chosen, and shown while its menu is open.
class QtMenus {
  public:
    QtMenus(QMenuBar& bar, Application& app, std::function<void()> chosen);

    /// Brings the menus up to date.
    void Update();
    /// Whether these keys are those of an item.
    [[nodiscard]] bool Owns(const QKeyEvent& keys) const;
    /// Opens the first menu, as the keyboard's way into all of them.
    void Open();

  private:
    void Watch(QMenu& menu);

    QMenuBar& mBar;
    Application& mApp;
    MenuTree mTree;
};

/// Choices that the program's menus know nothing of, and what each does; one that does nothing is disabled.
using MenuChoices = std::vector<std::pair<QString, std::function<void()>>>;

/// A menu at a point of the screen. Null if nothing was chosen, or one of the choices above its items, which
/// has been carried out then.
[[nodiscard]] MenuItem* RunPopUp(MenuItem& menu, const QPoint& at, QWidget* parent,
                                 const MenuChoices& above = {});

}  // namespace sorbel
