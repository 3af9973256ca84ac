#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/SharedText.h"

namespace sorbel {

class LocalizedStringSet;
struct EntryValue;

/// Hears of the changes of one document as they are made, so that they can be told again after an unexpected
/// end of the program.
class ChangeLog {
  public:
    virtual ~ChangeLog() = default;

    /// An entry is stored right after this; `before` is what it replaces, or null.
    virtual void StoringEntry(const SharedText& identifier, int64_t platform, const EntryValue* before,
                              const EntryValue& after) = 0;

    /// Runs many changes as one batch. A batch runs forth and back: it is told in full only once, so that
    /// running it again costs next to nothing. `number` is what the log knows it by, 0 before the first time;
    /// every run in the other direction must give each translation back that it had before the last one.
    /// `versions` are what the batch may add to the history.
    virtual void RunBatch(uint64_t& number, const std::vector<std::shared_ptr<LocalizedStringSet>>& versions,
                          const std::function<void()>& run) = 0;
};

}  // namespace sorbel
