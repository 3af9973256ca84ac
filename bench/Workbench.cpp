#include "Workbench.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/SpecialFolder.h"
#include "shell/Start.h"

namespace sorbel::bench {

namespace {

[[noreturn]] void Fail(const String& why) {
    std::fprintf(stderr, "bench: %s\n", why.c_str());
    std::exit(1);
}

}  // namespace

Workbench::Workbench(const String& base, bool journal) : mBase(base) {
    Clock::Install(&mTime);
    SpecialFolder::SetResources(SORBEL_RESOURCES);
    // With the scripts that every look at the menus lists: the samples, not the user's.
    mFolder = (std::filesystem::temp_directory_path() / "sorbel-bench-XXXXXX").native();
    if (!mkdtemp(mFolder.data())) Fail("no temporary folder");
    SpecialFolder::SetDocuments(mFolder);
    if (journal) SpecialFolder::SetState(mFolder + "/state");
    const String document = mFolder + "/document.kestrum_locale";
    std::filesystem::copy_file(base + ".versions.kestrum_locale", document);
    mApp = MakeApplication(mDesktop);
    mApp->Start({std::make_shared<FolderItem>(document)});
    mWindow = dynamic_cast<MainWindow*>(mApp->FrontWindow());
    if (!mWindow) Fail("no window on " + base);
}

Workbench::~Workbench() {
    mApp.reset();
    std::error_code ignored;
    std::filesystem::remove_all(mFolder, ignored);
    Clock::Install(nullptr);
}

void Workbench::Choose(StringView name) {
    if (!mApp->Choose(*mApp->MenuBar->FindByName(name)).Enabled) Fail(String(name) + " is not enabled");
    if (mDesktop.Messages > 0) Fail(String(name) + " showed a message");
}

void Workbench::Import(StringView ending) {
    mDesktop.File = std::make_shared<FolderItem>(mBase + String(ending));
    Choose("FileImportExistingFile");
}

void Workbench::Type() {
    mTime.Advance(100);  // apart from the last change, so that the two do not join
    mWindow->LocalizedValueField.UserSetText(mWindow->LocalizedValueField.Text() + "x");
}

}  // namespace sorbel::bench
