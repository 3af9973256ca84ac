#pragma once

#include <QString>
#include <memory>

#include "ui/toolkit/Dialogs.h"

class QWidget;

namespace sorbel {

struct MessageAnswer {
    const MessageDialogButton* Button = nullptr;  ///< null: none
    bool ByEscape = false;
};

// Dialogs on a parent widget, which may be null. They wait until the user is done.

void RunMessage(StringView text, QWidget* parent);
[[nodiscard]] MessageAnswer RunMessage(const MessageDialog& dialog, const QString& title, QWidget* parent,
                                       bool sheet);
[[nodiscard]] std::shared_ptr<FolderItem> RunOpen(const OpenDialog& dialog, const QString& folder,
                                                  QWidget* parent, bool sheet);
[[nodiscard]] std::shared_ptr<FolderItem> RunSave(StringView filter, StringView defaultName,
                                                  const QString& folder, QWidget* parent);

/// The name filters of a file dialog for file types joined by ";": all together first, then one by one, then
/// all files if they are wanted.
[[nodiscard]] QStringList NameFilters(StringView filter, bool allFiles);

}  // namespace sorbel
