#pragma once

#include <QString>

#include "platform/FolderItem.h"
#include "platform/Text.h"

namespace sorbel {

// All conversion between the program's text, which is bytes, and the toolkit's.

/// For showing only: bytes that are not valid UTF-8 become U+FFFD.
[[nodiscard]] QString ToQt(StringView text);

/// For a text field: each line end is one '\n', and a byte that is not valid UTF-8 is a lone surrogate
/// (U+DC00 plus the byte), which is drawn as U+FFFD and finds its way back through `FromQt`.
[[nodiscard]] QString ToEditable(StringView text);

/// UTF-8; lone surrogates made by `ToEditable` become their byte again, others U+FFFD.
[[nodiscard]] String FromQt(QStringView text);

/// A path of the file system; null for the empty one.
[[nodiscard]] std::shared_ptr<FolderItem> FileFromQt(const QString& path);

/// Walks over a text in the steps in which `ToEditable` shows it.
class EditableWalk {
  public:
    explicit EditableWalk(StringView text) : mText(text) {}

    [[nodiscard]] bool AtEnd() const { return mBytes == mText.size(); }
    /// Goes over one character or line end and appends what is shown for it, if `shown` is given.
    void Step(QString* shown = nullptr);
    [[nodiscard]] size_t Bytes() const { return mBytes; }     ///< walked over
    [[nodiscard]] qsizetype Shown() const { return mShown; }  ///< UTF-16 units shown for them

  private:
    StringView mText;
    size_t mBytes = 0;
    qsizetype mShown = 0;
};

}  // namespace sorbel
