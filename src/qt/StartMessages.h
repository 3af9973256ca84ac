#pragma once

#include <QtGlobal>

namespace sorbel {

/// While it lives, the toolkit's messages are held back. Where the toolkit cannot go on, which it would tell
/// in paragraphs and by a core dump, the program ends with status 1 and one line on the standard error. One
/// at a time, around the making of the application object.
class StartMessages {
  public:
    StartMessages();
    StartMessages(const StartMessages&) = delete;
    StartMessages& operator=(const StartMessages&) = delete;
    /// What was held is told in the usual way.
    ~StartMessages();

  private:
    QtMessageHandler mUsual;
};

}  // namespace sorbel
