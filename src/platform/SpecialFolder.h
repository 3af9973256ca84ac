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
    /// Where the program keeps what it needs after an unexpected end, whether or not it exists; null if not
    /// set.
    static std::shared_ptr<FolderItem> State();
    static void SetState(StringView path);
    /// The path that the XDG base directory rules give: below `XDG_STATE_HOME` if that is absolute, else
    /// below the user's home.
    [[nodiscard]] static String UsualState();
};

}  // namespace sorbel
