#pragma once

#include <optional>

#include "checks/Row.h"
#include "platform/WordCounter.h"

namespace sorbel::checks {

/// How far the translation of a document is. Words are those of the default texts.
struct Statistics {
    int64_t Strings = 0, Rows = 0, Translated = 0, Words = 0, WordsToDo = 0;

    /// Of the rows, those with a translation, rounded down: 100 says that all are. Without rows all are.
    [[nodiscard]] int64_t Percent() const { return Rows == 0 ? 100 : Translated * 100 / Rows; }
};

class StatisticsCounter {
  public:
    /// Rows of one string come one after the other, and the identifier lives until the next one.
    void Add(const Row& row);
    [[nodiscard]] const Statistics& Counted() const { return mStatistics; }

  private:
    Statistics mStatistics;
    std::optional<StringView> mIdentifier;
    WordCounter mWords;
};

}  // namespace sorbel::checks
