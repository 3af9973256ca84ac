#include "interchange/ApplicationExport.h"

#include "interchange/FrameworkStrings.h"
#include "interchange/MoFile.h"
#include "interchange/StringFile.h"
#include "platform/Exceptions.h"
#include "platform/FileContents.h"

namespace sorbel {

namespace {

FolderItem ChildOf(const FolderItem& folder, StringView name) {
    const std::shared_ptr<FolderItem> child = folder.Child(name);
    if (!child) throw IOException("There is no place for \"" + String(name) + "\".");
    return *child;
}

/// Into the bundle's folder for the language. "Contents" and "Resources" must exist.
void ExportIntoMacApplication(const LocalizedStringSet& set, const FolderItem& application) {
    const FolderItem resources = ChildOf(ChildOf(application, "Contents"), "Resources");
    const FolderItem folder = ChildOf(resources, set.Language + ".lproj");
    if (!folder.Exists()) folder.CreateAsFolder();
    WriteContents(ChildOf(folder, "Localizable.strings"), ToStringFile(set));
    const String framework = LocalizedMacFrameworkStrings(set.Language);
    if (!framework.empty()) WriteContents(ChildOf(folder, "NVFramework.strings"), framework);
}

/// Into the "Resources" folder beside the executable, which must exist.
void ExportIntoWindowsApplication(const LocalizedStringSet& set, const FolderItem& application) {
    const std::shared_ptr<FolderItem> beside = application.Parent();
    if (!beside) throw NilObjectException("The application has no parent folder.");
    WriteContents(ChildOf(ChildOf(*beside, "Resources"), set.Language + ".mo"), ToMoFile(set));
}

}  // namespace

ApplicationKind KindOfApplication(const FolderItem& application) {
    const String ending = Right(application.Name(), 4);
    if (Equal(ending, ".app") && application.Directory()) return ApplicationKind::Mac;
    return Equal(ending, ".exe") ? ApplicationKind::Windows : ApplicationKind::Other;
}

void ExportIntoApplication(const LocalizedStringSet& set, const FolderItem& application) {
    switch (KindOfApplication(application)) {
        case ApplicationKind::Mac:
            return ExportIntoMacApplication(set, application);
        case ApplicationKind::Windows:
            return ExportIntoWindowsApplication(set, application);
        case ApplicationKind::Other:
            throw IOException(String(NoPlaceInApplication));
    }
}

}  // namespace sorbel
