#include "ui/toolkit/Dialogs.h"

#include "ui/toolkit/Application.h"

namespace sorbel {

const MessageDialogButton* MessageDialog::ShowModal(Application& app) {
    return app.Desktop().Show(*this, nullptr);
}

const MessageDialogButton* MessageDialog::ShowModalWithin(Window& parent) {
    const std::shared_ptr<Window> held = parent.shared_from_this();  // it may be closed meanwhile
    return parent.App().Desktop().Show(*this, &parent);
}

std::shared_ptr<FolderItem> OpenDialog::ShowModal(Application& app) {
    return app.Desktop().Show(*this, nullptr);
}

std::shared_ptr<FolderItem> OpenDialog::ShowModalWithin(Window& parent) {
    const std::shared_ptr<Window> held = parent.shared_from_this();
    return parent.App().Desktop().Show(*this, &parent);
}

}  // namespace sorbel
