#pragma once

#include <memory>

#include "platform/FolderItem.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// Overwrites a file with a document as the program saves: in place, all or nothing, and an interrupted save
/// is completed at the next opening (`CompleteInterruptedSave` in LeftJournal.h). For whoever has nothing
/// more to do with the document, whose memory is given free. Fails with IOException, and the file is what it
/// was.
void SaveSafely(std::shared_ptr<LocalizedStringSet> document, const FolderItem& f);

}  // namespace sorbel
