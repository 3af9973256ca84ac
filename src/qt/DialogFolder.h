#pragma once

#include <QString>

namespace sorbel {

class Application;
class FolderItem;

/// Where file dialogs begin. Known for as long as the program runs.
class DialogFolder {
  public:
    /// The folder of the front document, else the one used last, else the working directory. Folders that are
    /// gone do not count.
    [[nodiscard]] QString First(const Application* app) const;
    /// A file has been chosen in a dialog.
    void Used(const FolderItem& file);

  private:
    QString mLast;
};

}  // namespace sorbel
