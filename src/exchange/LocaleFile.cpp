#include "exchange/LocaleFile.h"

#include "exchange/ExchangeError.h"
#include "exchange/Output.h"
#include "journal/LeftJournal.h"
#include "journal/SafeSave.h"
#include "platform/FileContents.h"

namespace sorbel {

std::shared_ptr<LocalizedStringSet> ReadLocale(const String& path) {
    const FolderItem file(path);
    try {
        if (CompleteInterruptedSave(file))
            Tell("sorbel-exchange: " + path + ": its last save had been interrupted and is now complete\n");
        auto set = std::make_shared<LocalizedStringSet>();
        if (set->ReadBytes(ReadContents(file))) return set;
    } catch (const RuntimeException& failure) {
        throw ExchangeError(path, failure.Message());
    }
    throw ExchangeError(path, "not a valid locale file");
}

void SaveLocale(const String& path, std::shared_ptr<LocalizedStringSet> document) {
    try {
        if (path == "-")
            Print(document->ToBytes());
        else
            SaveSafely(std::move(document), FolderItem(path));
    } catch (const IOException& failure) {
        throw ExchangeError(path, failure.Message());
    }
}

void CopyLocale(const String& path, const LocalizedStringSet& document) {
    const StringView bytes = document.FileBytes().front();
    try {
        if (path == "-")
            Print(bytes);
        else
            WriteContents(FolderItem(path), bytes);
    } catch (const IOException& failure) {
        throw ExchangeError(path, failure.Message());
    }
}

}  // namespace sorbel
