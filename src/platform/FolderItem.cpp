#include "platform/FolderItem.h"

#include <algorithm>
#include <filesystem>

#include "platform/FileType.h"

namespace sorbel {

namespace fs = std::filesystem;

namespace {

/// System calls end a path at a zero byte, and would reach another file than the one that is named.
bool IsNameable(StringView path) {
    return path.find('\0') == StringView::npos;
}

fs::file_status Status(const String& path) {
    std::error_code error;
    return IsNameable(path) ? fs::status(path, error) : fs::file_status(fs::file_type::not_found);
}

String Clean(StringView path) {
    std::error_code error;
    fs::path clean(path);
    if (clean.is_relative()) clean = fs::current_path(error) / clean;
    String text = clean.lexically_normal().native();
    if (text.size() > 1 && text.ends_with('/')) text.pop_back();
    return text.starts_with('/') ? text : "/" + text;
}

/// The path without slashes behind it; empty at the root.
StringView WithoutEndSlashes(StringView path) {
    return path.substr(0, path.find_last_not_of('/') + 1);
}

}  // namespace

FolderItem::FolderItem(StringView path) : mPath(Clean(path)) {}

String FolderItem::Name() const {
    const StringView path = WithoutEndSlashes(mPath);
    return path.empty() ? "/" : String(path.substr(path.rfind('/') + 1));
}

String FolderItem::Type() const {
    const String name = Name();
    for (const FileType& type : FileType::Registered())
        if (type.Matches(name)) return type.Name;
    return {};
}

bool FolderItem::Exists() const {
    return fs::exists(Status(mPath));
}

bool FolderItem::Directory() const {
    return fs::is_directory(Status(mPath));
}

std::shared_ptr<FolderItem> FolderItem::Parent() const {
    const StringView path = WithoutEndSlashes(mPath);
    if (path.empty()) return nullptr;
    return std::make_shared<FolderItem>(path.substr(0, path.rfind('/') + 1));
}

std::shared_ptr<FolderItem> FolderItem::Child(StringView name, bool followAlias) const {
    const bool namesItem = !name.empty() && name != "." && name != ".." && name.find('/') == StringView::npos;
    if (!namesItem || !IsNameable(name)) return nullptr;
    const String path = mPath + "/" + String(name);
    std::error_code error;
    if (followAlias && IsNameable(path) && fs::is_symlink(path, error)) {
        const fs::path target = fs::canonical(path, error);
        if (!error) return std::make_shared<FolderItem>(target.native());
    }
    return std::make_shared<FolderItem>(path);
}

std::vector<std::shared_ptr<FolderItem>> FolderItem::Items() const {
    std::vector<std::shared_ptr<FolderItem>> items;
    if (!IsNameable(mPath)) return items;
    std::error_code error;
    for (fs::directory_iterator at(mPath, error); !error && at != fs::directory_iterator();
         at.increment(error))
        items.push_back(std::make_shared<FolderItem>(at->path().native()));
    // They share the folder's path, so their order is that of the names.
    std::ranges::sort(items, {}, [](const auto& item) -> const String& { return item->mPath; });
    return items;
}

void FolderItem::CreateAsFolder() const {
    std::error_code ignored;
    if (IsNameable(mPath)) fs::create_directory(mPath, ignored);
}

std::shared_ptr<FolderItem> GetFolderItemFromSaveInfo(StringView info) {
    if (!info.starts_with('/') || !IsNameable(info)) return nullptr;
    auto item = std::make_shared<FolderItem>("/");
    item->mPath = info;  // unchanged, so that a document keeps the bytes that it came with
    return item;
}

}  // namespace sorbel
