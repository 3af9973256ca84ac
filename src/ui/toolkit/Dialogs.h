#pragma once

#include <memory>

#include "platform/FolderItem.h"
#include "platform/Text.h"

namespace sorbel {

class Application;
class Window;

struct MessageDialogButton {
    String Caption;
    bool Visible = false;
    bool Default = false;
    bool Cancel = false;
};

/// A question with up to three buttons.
class MessageDialog {
  public:
    enum class Kind {
        Question,
        Caution,  ///< something may not be what the user takes it for
    };

    Kind Type = Kind::Question;
    String Message;
    String Explanation;
    MessageDialogButton ActionButton{"OK", true, true, false};
    MessageDialogButton CancelButton{"Cancel", false, false, true};
    MessageDialogButton AlternateActionButton;

    /// The button that was pressed, or null if the dialog went away without one.
    const MessageDialogButton* ShowModal(Application& app);
    /// As a sheet of the window.
    const MessageDialogButton* ShowModalWithin(Window& parent);
};

/// Asks for an existing file.
class OpenDialog {
  public:
    String Filter;           ///< names of file types, joined by ";"
    bool OnlyTypes = false;  ///< files of no other type are offered
    String PromptText;

    /// The file, or null.
    std::shared_ptr<FolderItem> ShowModal(Application& app);
    std::shared_ptr<FolderItem> ShowModalWithin(Window& parent);
};

}  // namespace sorbel
