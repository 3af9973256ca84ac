#include "platform/FolderItem.h"

#include <dirent.h>
#include <sys/stat.h>

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

/// What sort of file it is, 0 for none, without the detour over a path that is taken apart first: every
/// command asks some times, for the menus.
mode_t SortOf(const String& path, bool followLink) {
    struct stat status;
    if (!IsNameable(path) || (followLink ? stat : lstat)(path.c_str(), &status) != 0) return 0;
    return status.st_mode & S_IFMT;
}

/// Where a symbolic link leads in the end; nothing if it leads nowhere.
std::optional<String> Target(const String& link) {
    std::error_code error;
    const fs::path target = fs::canonical(link, error);
    return error ? std::nullopt : std::optional(target.native());
}

/// Has none of what `Clean` takes out, as nearly every path that comes from the system.
bool IsClean(StringView path) {
    return path.starts_with('/') && !path.ends_with('/') && path.find("//") == StringView::npos &&
           path.find("/.") == StringView::npos;
}

/// The path without slashes behind it; empty at the root.
StringView WithoutEndSlashes(StringView path) {
    return path.substr(0, path.find_last_not_of('/') + 1);
}

/// The name behind the last slash.
StringView LastName(StringView path) {
    return path.substr(path.rfind('/') + 1);
}

/// Goes one name on, or back for ".." behind what is a folder for certain. Behind a link it is the folder
/// that holds the link's target, which only the system can tell, and behind nothing it is a failure.
void Step(String& path, StringView name) {
    const bool isRoot = path.empty();
    const bool isBack = name == "..";
    if (isBack && !isRoot && LastName(path) != ".." && SortOf(path, false) == S_IFDIR)
        path.resize(path.rfind('/'));
    else if (!name.empty() && name != "." && !(isBack && isRoot))
        path.append("/").append(name);
}

String Clean(StringView path) {
    if (IsClean(path)) return String(path);
    String clean;
    std::error_code ignored;
    if (!path.starts_with('/')) clean = WithoutEndSlashes(fs::current_path(ignored).native());
    for (size_t start = 0; start < path.size();) {
        const size_t end = std::min(path.find('/', start), path.size());
        Step(clean, path.substr(start, end - start));
        start = end + 1;
    }
    return clean.empty() ? "/" : clean;
}

}  // namespace

FolderItem::FolderItem(StringView path) : mPath(Clean(path)) {}

String FolderItem::Name() const {
    const StringView path = WithoutEndSlashes(mPath);
    return path.empty() ? "/" : String(LastName(path));
}

String FolderItem::Type() const {
    const String name = Name();
    for (const FileType& type : FileType::Registered())
        if (type.Matches(name)) return type.Name;
    return {};
}

bool FolderItem::Exists() const {
    return SortOf(mPath, true) != 0;
}

bool FolderItem::Directory() const {
    return SortOf(mPath, true) == S_IFDIR;
}

std::shared_ptr<FolderItem> FolderItem::Parent() const {
    const StringView path = WithoutEndSlashes(mPath);
    if (path.empty()) return nullptr;
    if (LastName(path) == "..") return std::make_shared<FolderItem>(String(path) + "/..");
    return std::make_shared<FolderItem>(path.substr(0, path.rfind('/') + 1));
}

std::shared_ptr<FolderItem> FolderItem::Child(StringView name, bool followAlias) const {
    const std::optional<String> path = PathOf(name);
    if (!path) return nullptr;
    const bool isLink = followAlias && SortOf(*path, false) == S_IFLNK;
    return std::make_shared<FolderItem>(isLink ? Target(*path).value_or(*path) : *path);
}

std::shared_ptr<FolderItem> FolderItem::ExistingChild(StringView name) const {
    std::optional<String> path = PathOf(name);
    const mode_t sort = path ? SortOf(*path, false) : 0;
    if (sort == S_IFLNK) path = Target(*path);
    return path && sort != 0 ? std::make_shared<FolderItem>(*path) : nullptr;
}

/// The path of an item, existing or not; nothing for a text that names none.
std::optional<String> FolderItem::PathOf(StringView name) const {
    const bool namesItem = !name.empty() && name != "." && name != ".." && name.find('/') == StringView::npos;
    if (!namesItem || !IsNameable(name)) return std::nullopt;
    return mPath + "/" + String(name);
}

std::vector<std::shared_ptr<FolderItem>> FolderItem::Items() const {
    std::vector<std::shared_ptr<FolderItem>> items;
    for (const String& name : ItemNames())
        items.push_back(std::make_shared<FolderItem>(mPath + "/" + name));
    return items;
}

std::vector<String> FolderItem::ItemNames() const {
    std::vector<String> names;
    if (!IsNameable(mPath)) return names;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(mPath.c_str()), closedir);
    while (const dirent* const entry = folder ? readdir(folder.get()) : nullptr)
        if (const StringView name = entry->d_name; name != "." && name != "..") names.emplace_back(name);
    std::ranges::sort(names);
    return names;
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
