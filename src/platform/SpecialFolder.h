#pragma once

#include <memory>

#include "platform/FolderItem.h"

namespace sorbel {

/// Folders that the desktop provides. The program's `main` names them once at start.
class SpecialFolder {
  public:
    /// Icons and framework strings; null if not set.
    static std::shared_ptr<FolderItem> Resources();
    static void SetResources(StringView path);
    /// The user's documents; null if not set.
    static std::shared_ptr<FolderItem> Documents();
    static void SetDocuments(StringView path);
};

}  // namespace sorbel
