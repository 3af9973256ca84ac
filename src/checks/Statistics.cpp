#include "checks/Statistics.h"

namespace sorbel::checks {

void StatisticsCounter::Add(const Row& row) {
    if (mIdentifier != row.Identifier) ++mStatistics.Strings;
    mIdentifier = row.Identifier;
    const int64_t words = mWords.Count(row.Default);
    const bool isTranslated = !row.Translation.empty();
    ++mStatistics.Rows;
    mStatistics.Translated += isTranslated ? 1 : 0;
    mStatistics.Words += words;
    mStatistics.WordsToDo += isTranslated ? 0 : words;
}

}  // namespace sorbel::checks
