#include "ui/toolkit/Dialogs.h"

#include "ui/toolkit/Application.h"

namespace sorbel {

const MessageDialogButton* MessageDialog::ShowModal(Application& app) {
    return app.Desktop().Show(*this, nullptr);
}

const MessageDialogButton* MessageDialog::ShowModalWithin(Window& parent) {
    return parent.App().Desktop().Show(*this, &parent);
}

std::shared_ptr<FolderItem> OpenDialog::ShowModal(Application& app) {
    return app.Desktop().Show(*this, nullptr);
}

std::shared_ptr<FolderItem> OpenDialog::ShowModalWithin(Window& parent) {
    return parent.App().Desktop().Show(*this, &parent);
}

}  // namespace sorbel
