#include "platform/SpecialFolder.h"

namespace sorbel {

namespace {

std::shared_ptr<FolderItem> resources;
std::shared_ptr<FolderItem> documents;

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

}  // namespace sorbel
