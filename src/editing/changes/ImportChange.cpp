#include "editing/changes/ImportChange.h"

#include <algorithm>

#include "notifications/Notifications.h"

namespace sorbel {

void ImportChange::Execute() {
    Run([](Action& action) { action.Perform(); }, &ImportChange::AddHistories);
}

// Each change knows the value from before the whole import, so the order does not matter.
void ImportChange::Unexecute() {
    Run([](Action& action) { action.Undo(); }, &ImportChange::TakeHistories);
}

void ImportChange::Run(void (*change)(Action& action), void (ImportChange::*histories)()) {
    const auto run = [&] {
        Notifications::Batch([&] {
            for (const auto& single : Changes)
                change(*single);
        });
        (this->*histories)();
    };
    if (ChangeLog* const log = Document ? Document->Log() : nullptr)
        log->RunBatch(mLogged, Histories, run);
    else
        run();
}

void ImportChange::AddHistories() {
    if (StringSet) StringSet->History.insert(StringSet->History.end(), Histories.begin(), Histories.end());
}

void ImportChange::TakeHistories() {
    if (!StringSet) return;
    auto& history = StringSet->History;
    for (const auto& snapshot : Histories) {
        const auto found = std::find(history.begin(), history.end(), snapshot);
        if (found != history.end()) history.erase(found);
    }
}

}  // namespace sorbel
