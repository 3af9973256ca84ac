#pragma once

#include <QString>
#include <vector>

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

/// A path of the file system; null for the empty one. Names that are not text in the user's encoding have no
/// path of this kind: where such may come, take the bytes or an address.
[[nodiscard]] std::shared_ptr<FolderItem> FileFromQt(const QString& path);

// --- Addresses (`file:` URIs), in which any bytes of a path can be written ---

[[nodiscard]] String ToUri(const FolderItem& file);
/// Null for what is not a file of this machine.
[[nodiscard]] std::shared_ptr<FolderItem> FileFromUri(StringView uri);
/// By an address or a path. What is the address of no file of this machine is taken for a path, and opening
/// it tells that it could not be opened.
[[nodiscard]] std::shared_ptr<FolderItem> FileFromWord(StringView word);
/// The files of this machine in a list with a line for each, as one drops them.
[[nodiscard]] std::vector<std::shared_ptr<FolderItem>> FilesFromUriList(StringView list);

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
