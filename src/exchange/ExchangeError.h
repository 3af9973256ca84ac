#pragma once

#include <cstdint>

#include "platform/Exceptions.h"
#include "platform/Text.h"

namespace sorbel {

/// A file that can't be read, written or understood. Its message is "FILE: why", or "FILE: line N: why".
class ExchangeError : public RuntimeException {
  public:
    ExchangeError(StringView file, StringView why, int64_t line = 0)
        : RuntimeException(String(file) + ": " + (line > 0 ? "line " + std::to_string(line) + ": " : "") +
                           String(why)) {}
};

/// What a reader of a text finds wrong; whoever knows the file's name makes an `ExchangeError` of it.
class FormatError : public RuntimeException {
  public:
    /// `line` counts from 1; 0 is none.
    FormatError(StringView why, int64_t line) : RuntimeException(String(why)), mLine(line) {}
    [[nodiscard]] int64_t Line() const { return mLine; }

  private:
    int64_t mLine;
};

/// A command line that makes no sense.
class WrongUse : public RuntimeException {
  public:
    using RuntimeException::RuntimeException;
};

}  // namespace sorbel
