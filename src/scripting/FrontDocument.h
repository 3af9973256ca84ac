#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace sorbel {

class Window;

/// What a script can reach of the front document window: its rows and the two texts of the selected one. Row
/// indexes count from 0, -1 is none.
class FrontDocument {
  public:
    virtual ~FrontDocument() = default;
    [[nodiscard]] virtual Window& DocumentWindow() = 0;
    [[nodiscard]] virtual int64_t RowCount() const = 0;
    [[nodiscard]] virtual int64_t SelectedRow() const = 0;
    /// Selects as if the list did it; the texts are those of the new row at once.
    virtual void SelectRow(int64_t row) = 0;
    [[nodiscard]] virtual String DefaultText() const = 0;
    [[nodiscard]] virtual String TranslatedText() const = 0;
    /// Puts the text into the field that the translator types in, so that it is an ordinary undoable change.
    virtual void SetTranslatedText(StringView text) = 0;
};

}  // namespace sorbel
