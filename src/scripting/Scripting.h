#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/FolderItem.h"
#include "ui/toolkit/MenuItem.h"

namespace sorbel {

class Application;

/// The user's scripts: a folder of text files, and the menu that mirrors it.
namespace Scripting {

/// The folder of the scripts, with its samples, making what is missing. Null if the user has no Documents
/// folder.
[[nodiscard]] std::shared_ptr<FolderItem> ScriptsFolder();

/// Runs a script's text to its end, or until the user stops it. Errors are told to the user. `stopAfter`: in
/// place of the user, stops it after that many jumps back and calls.
void RunScript(Application& app, StringView source, std::optional<int64_t> stopAfter = std::nullopt);

/// Brings the items of the Scripts menu in step with the folder as it stands. False: there is no such folder,
/// and the menu has got the items behind the scripts once more.
bool RebuildMenu(MenuItem& scriptsMenu, Application& app);

/// A script, or with a null `tag` the item that shows the scripts folder.
class ScriptMenuItem : public MenuItem {
  public:
    ScriptMenuItem(Application& app, String caption, StringView shortcut, std::shared_ptr<FolderItem> tag,
                   bool enabled);

    [[nodiscard]] bool HasAction() const override { return true; }
    bool Event_Action() override;
    [[nodiscard]] const std::shared_ptr<FolderItem>& Tag() const { return mTag; }

  private:
    bool ShowScriptsFolder();

    Application& mApp;
    std::shared_ptr<FolderItem> mTag;
};

}  // namespace Scripting

}  // namespace sorbel
