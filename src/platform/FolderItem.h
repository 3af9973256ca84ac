#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/Text.h"

namespace sorbel {

/// A file or folder by its path, whether or not it exists. Null pointers stand for "no item".
class FolderItem {
  public:
    /// Paths are the system's bytes; a relative one starts at the working directory. "." and surplus slashes
    /// are taken out, and ".." where it follows a folder; symbolic links stay, and so does what follows them,
    /// so that the path means to the system what it meant before.
    explicit FolderItem(StringView path);

    /// The last part of the path, as stored and as shown to the user; "/" at the root.
    [[nodiscard]] String Name() const;
    [[nodiscard]] String DisplayName() const { return Name(); }
    [[nodiscard]] const String& NativePath() const { return mPath; }
    /// Name of the registered file type whose extension this name has, empty if none.
    [[nodiscard]] String Type() const;

    [[nodiscard]] bool Exists() const;
    [[nodiscard]] bool Directory() const;
    [[nodiscard]] std::shared_ptr<FolderItem> Parent() const;  ///< null at the root
    /// An item of this folder by name, existing or not; null for a text that names none, such as "", ".." or
    /// one with a "/". `followAlias` resolves a symbolic link that leads somewhere.
    [[nodiscard]] std::shared_ptr<FolderItem> Child(StringView name, bool followAlias = true) const;
    /// The same with links followed, but null for an item that does not exist.
    [[nodiscard]] std::shared_ptr<FolderItem> ExistingChild(StringView name) const;
    /// Items of this folder by name, in byte order; empty if it cannot be read.
    [[nodiscard]] std::vector<std::shared_ptr<FolderItem>> Items() const;
    /// Their names, in the same order.
    [[nodiscard]] std::vector<String> ItemNames() const;
    /// Does nothing if it cannot be created.
    void CreateAsFolder() const;

    /// Bytes that name this file in a document: its absolute path.
    [[nodiscard]] String GetSaveInfo() const { return mPath; }

    bool operator==(const FolderItem&) const = default;

  private:
    [[nodiscard]] std::optional<String> PathOf(StringView name) const;
    friend std::shared_ptr<FolderItem> GetFolderItemFromSaveInfo(StringView info);

    String mPath;  // absolute
};

/// The file that such bytes name, and that gives back the same bytes; null if they are not an absolute path.
[[nodiscard]] std::shared_ptr<FolderItem> GetFolderItemFromSaveInfo(StringView info);

}  // namespace sorbel
