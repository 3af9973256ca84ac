#include "exchange/Commands.h"
#include "exchange/ExchangeError.h"
#include "exchange/LocaleFile.h"
#include "interchange/ApplicationExport.h"

namespace sorbel {

int ApplicationCommand(const Arguments& arguments) {
    const String& path = arguments.Operands()[1];
    const std::shared_ptr<LocalizedStringSet> set = ReadLocale(arguments.Operands()[0]);
    const FolderItem application(path);
    if (KindOfApplication(application) == ApplicationKind::Other)
        throw ExchangeError(path, String(NoPlaceInApplication) + " " + String(AdviceOnApplications));
    try {
        ExportIntoApplication(*set, application);
    } catch (const RuntimeException& failure) {
        throw ExchangeError(path, "Could not update application: " + failure.Message());
    }
    return Done;
}

}  // namespace sorbel
