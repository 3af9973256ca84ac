#pragma once

#include <cstdint>
#include <memory>

#include "platform/Text.h"

namespace sorbel {

/// Counts words as Unicode tells them apart (UAX #29, and dictionaries for scripts that have no blanks
/// between words): numbers are words, blanks and punctuation are not. Made once for many texts.
class WordCounter {
  public:
    /// Fails with RuntimeException if the data of the Unicode library is missing.
    WordCounter();
    ~WordCounter();
    WordCounter(const WordCounter&) = delete;
    WordCounter& operator=(const WordCounter&) = delete;

    /// Bytes that are not UTF-8 are no part of a word.
    [[nodiscard]] int64_t Count(StringView text);

  private:
    struct Iterator;
    std::unique_ptr<Iterator> mIterator;
};

}  // namespace sorbel
