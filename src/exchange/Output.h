#pragma once

#include <functional>
#include <memory>

#include "platform/FolderItem.h"
#include "platform/Text.h"

namespace sorbel {

/// Text on its way out, piece by piece, so that a large file is never in memory as a whole.
class Output {
  public:
    using Receiver = std::function<void(StringView)>;
    explicit Output(Receiver receiver) : mReceiver(std::move(receiver)) {}

    /// What is put behind this goes out sooner or later.
    String& Text() {
        FlushIfLarge();
        return mText;
    }
    /// Never fails but for want of memory.
    void Append(StringView text) { mText += text; }
    void FlushIfLarge() {
        if (mText.size() >= PieceSize) Flush();
    }
    void Flush();

  private:
    static constexpr size_t PieceSize = size_t{1} << 18;

    Receiver mReceiver;
    String mText;
};

/// Makes what `write` puts out the contents of a file, all or nothing: until it is complete it has another
/// name beside. The file's mode stays, and so does a link to it. "-" is standard output. Fails with
/// IOException.
void WriteOutput(const String& path, const std::function<void(Output&)>& write);

/// To standard output. Fails with ExchangeError.
void Print(StringView text);
/// To standard error; where that is closed nobody wants to know.
void Tell(StringView text);

}  // namespace sorbel
