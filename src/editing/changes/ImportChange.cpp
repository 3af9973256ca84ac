#include "editing/changes/ImportChange.h"

#include <algorithm>

#include "ui/Notifications.h"

namespace sorbel {

void ImportChange::Execute() {
    Notifications::Batch([this] {
        for (const auto& change : Changes)
            change->Perform();
    });
    if (StringSet) StringSet->History.insert(StringSet->History.end(), Histories.begin(), Histories.end());
}

// Each change knows the value from before the whole import, so the order does not matter.
void ImportChange::Unexecute() {
    Notifications::Batch([this] {
        for (const auto& change : Changes)
            change->Undo();
    });
    if (!StringSet) return;
    auto& history = StringSet->History;
    for (const auto& snapshot : Histories) {
        const auto found = std::find(history.begin(), history.end(), snapshot);
        if (found != history.end()) history.erase(found);
    }
}

}  // namespace sorbel
