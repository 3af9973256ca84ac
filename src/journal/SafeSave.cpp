#include "journal/SafeSave.h"

#include "journal/Journal.h"

namespace sorbel {

namespace {

/// What a journal asks of a document besides its entries.
std::shared_ptr<LocalizedStringSet> WithoutEntries(const LocalizedStringSet& document) {
    auto rest = std::make_shared<LocalizedStringSet>();
    rest->Language = document.Language;
    rest->EditedApplication = document.EditedApplication;
    rest->History = document.History;
    return rest;
}

}  // namespace

void SaveSafely(std::shared_ptr<LocalizedStringSet> document, const FolderItem& f) {
    const std::vector<StringView> files = document->FileBytes();
    // A folder for journals that can't be used is no reason not to save.
    Journal journal(WithoutEntries(*document), std::make_shared<FolderItem>(f),
                    files.empty() ? StringView() : files.front(), [](const String&) {});
    const String bytes = document->ToBytes();
    document.reset();
    journal.Save(bytes);
}

}  // namespace sorbel
