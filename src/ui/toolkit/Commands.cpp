// The menus of an application: which items can be used, and who acts on a choice.
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Raised.h"
#include "ui/toolkit/TextEditor.h"

namespace sorbel {

// --- Refresh ---

void Application::EnableMenuItems() {
    if (mRefreshing) return;  // the front window's own refresh may ask for one
    const Raised refreshing(mRefreshing);
    if (MenuBar) Refresh(*MenuBar);
    if (Window* const front = FrontWindow()) front->Event_EnableMenuItems();
    mBackend.MenusChanged();
}

void Application::Refresh(MenuItem& menu) {
    for (size_t index = 0; index < menu.Count(); ++index) {
        MenuItem& item = menu.Item(index);
        const bool holdsItems = &menu == MenuBar.get() || item.Count() > 0;
        if (!item.HasAction() || holdsItems)
            item.Enabled = !item.IsSeparator() && (holdsItems || (item.AutoEnabled && CanRun(item)));
        Refresh(item);
    }
}

bool Application::CanRun(const MenuItem& item) const {
    if (item.Role == MenuRole::Quit || CanEdit(item.Edit)) return true;
    if (item.Name().empty()) return false;
    const Window* const front = FrontWindow();
    return (front && front->Handlers().HasKey(item.Name())) || mMenuHandlers.HasKey(item.Name());
}

bool Application::CanEdit(EditCommand command) const {
    const TextEditor* const editor = FocusedEditor();
    if (command == EditCommand::None || !editor || !editor->Enabled() || !editor->Visible()) return false;
    return !editor->ReadOnly || command == EditCommand::Copy || command == EditCommand::SelectAll;
}

TextEditor* Application::FocusedEditor() const {
    const Window* const front = FrontWindow();
    return front ? dynamic_cast<TextEditor*>(front->Focus()) : nullptr;
}

// --- Choice ---

Application::Chosen Application::Choose(MenuItem& item) {
    // The refresh makes generated items anew; the chosen one has to outlive that and its own command.
    const std::shared_ptr<MenuItem> held = item.weak_from_this().lock();
    Chosen chosen;
    Perform([&] {
        EnableMenuItems();
        if (!item.Enabled || !item.Visible || item.IsSeparator()) return;
        chosen.Enabled = true;
        chosen.Handled = Run(item);
    });
    return chosen;
}

bool Application::Run(MenuItem& item) {
    if (item.Event_Action()) return true;
    // The window's table comes first, and the window need not outlive its handler.
    if (const Window* const front = FrontWindow(); front && RunHandler(front->Handlers(), item.Name()))
        return true;
    if (RunHandler(mMenuHandlers, item.Name())) return true;
    if (item.Role == MenuRole::Quit) {
        Quit();
        return true;
    }
    if (!CanEdit(item.Edit)) return false;
    mBackend.Edit(*FocusedEditor(), item.Edit);
    return true;
}

bool Application::RunHandler(const MenuHandlers& handlers, StringView name) {
    const MenuHandler* const found = name.empty() ? nullptr : handlers.Find(name);
    if (!found) return false;
    const MenuHandler handler = *found;  // a copy: the table may change while it runs
    return handler();
}

}  // namespace sorbel
