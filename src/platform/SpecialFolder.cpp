#include "platform/SpecialFolder.h"

#include <cstdlib>

namespace sorbel {

namespace {

std::shared_ptr<FolderItem> resources;
std::shared_ptr<FolderItem> documents;
std::shared_ptr<FolderItem> state;

}  // namespace

std::shared_ptr<FolderItem> SpecialFolder::Resources() {
    return resources;
}

void SpecialFolder::SetResources(StringView path) {
    resources = std::make_shared<FolderItem>(path);
}

std::shared_ptr<FolderItem> SpecialFolder::Documents() {
    return documents;
}

void SpecialFolder::SetDocuments(StringView path) {
    documents = std::make_shared<FolderItem>(path);
}

std::shared_ptr<FolderItem> SpecialFolder::State() {
    return state;
}

String SpecialFolder::UsualState() {
    const auto variable = [](const char* name) {
        const char* const value = std::getenv(name);
        return value ? StringView(value) : StringView();
    };
    const StringView base = variable("XDG_STATE_HOME");
    return base.starts_with('/') ? String(base) + "/sorbel"
                                 : String(variable("HOME")) + "/.local/state/sorbel";
}

void SpecialFolder::SetState(StringView path) {
    state = std::make_shared<FolderItem>(path);
}

}  // namespace sorbel
