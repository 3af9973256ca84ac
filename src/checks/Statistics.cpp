#include "checks/Statistics.h"

#include "stringset/PlatformTable.h"

namespace sorbel::checks {

void StatisticsCounter::Add(const Row& row) {
    if (mIdentifier != row.Identifier) ++mStatistics.Strings;
    mIdentifier = row.Identifier;
    const int64_t words = mWords.Count(row.Default);
    const bool isTranslated = IsTranslation(row.Translation);
    ++mStatistics.Rows;
    mStatistics.Translated += isTranslated ? 1 : 0;
    mStatistics.Words += words;
    mStatistics.WordsToDo += isTranslated ? 0 : words;
}

}  // namespace sorbel::checks
