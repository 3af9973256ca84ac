#include "exchange/Commands.h"
#include "exchange/ExchangeError.h"
#include "exchange/LocaleFile.h"
#include "exchange/Output.h"
#include "interchange/DelimitedText.h"
#include "interchange/Merge.h"
#include "platform/FileContents.h"

namespace sorbel {

namespace {

/// The window asks which language to use; its first answer, the document's own, is taken here.
void TellLanguage(const String& path, const LocalizedStringSet& imported, const LocalizedStringSet& set) {
    if (Equal(imported.Language, set.Language)) return;
    Tell("sorbel-exchange: " + path + ": its language is \"" + imported.Language + "\"; \"" + set.Language +
         "\" stays\n");
}

std::unique_ptr<ImportChange> ChangesFrom(const String& path,
                                          const std::shared_ptr<LocalizedStringSet>& set) {
    const FolderItem file(path);
    try {
        (void)ReadContents(file);  // tells why a file cannot be read, which the rest keeps to itself
        if (const auto imported = LocaleForImport(file)) {
            TellLanguage(path, *imported, *set);
            return ChangesFromLocale(set, *imported);
        }
        if (auto change = ChangesFromDelimitedText(set, file)) return change;
    } catch (const RuntimeException& failure) {
        throw ExchangeError(path, failure.Message());
    }
    throw ExchangeError(path, "The format of the file is not one that Sorbel can import.");
}

}  // namespace

int MergeCommand(const Arguments& arguments) {
    const String& locale = arguments.Operands()[0];
    std::shared_ptr<LocalizedStringSet> set = ReadLocale(locale);
    ChangesFrom(arguments.Operands()[1], set)->Perform();
    SaveLocale(arguments.Value("output").value_or(locale), std::move(set));
    return Done;
}

}  // namespace sorbel
