#include "exchange/LocaleFile.h"

#include <unistd.h>

#include "exchange/ExchangeError.h"
#include "exchange/Output.h"
#include "platform/FileContents.h"

namespace sorbel {

std::shared_ptr<LocalizedStringSet> ReadLocale(const String& path) {
    try {
        auto set = std::make_shared<LocalizedStringSet>();
        if (set->ReadBytes(ReadContents(FolderItem(path)))) return set;
    } catch (const RuntimeException& failure) {
        throw ExchangeError(path, failure.Message());
    }
    throw ExchangeError(path, "not a valid locale file");
}

void SaveLocale(const String& path, StringView bytes) {
    try {
        if (path == "-")
            WriteAll(STDOUT_FILENO, bytes);
        else
            WriteContents(FolderItem(path), bytes);
    } catch (const IOException& failure) {
        throw ExchangeError(path, failure.Message());
    }
}

}  // namespace sorbel
