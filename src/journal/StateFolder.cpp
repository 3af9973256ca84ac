#include "journal/StateFolder.h"

#include <chrono>
#include <cstdio>

#include "platform/SpecialFolder.h"

namespace sorbel::StateFolder {

namespace {

constexpr StringView Ending = ".journal";
constexpr mode_t OwnerOnly = 0700;

const FolderItem& Folder() {
    const std::shared_ptr<FolderItem> folder = SpecialFolder::State();
    if (!folder) ThrowSystemError(ENOENT);
    return *folder;
}

void Make(const FolderItem& folder) {
    const String& path = folder.NativePath();
    if (mkdir(path.c_str(), OwnerOnly) == 0) return;
    if (errno == ENOENT) {
        const std::shared_ptr<FolderItem> parent = folder.Parent();
        if (!parent) ThrowSystemError(ENOENT);
        Make(*parent);
        if (mkdir(path.c_str(), OwnerOnly) == 0) return;
    }
    if (errno != EEXIST) ThrowSystemError(errno);
}

/// Nanoseconds since 1970 in 16 hexadecimal digits.
String Moment() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx",
                  static_cast<unsigned long long>(std::chrono::nanoseconds(now).count()));
    return digits;
}

}  // namespace

String NewJournalPath() {
    const FolderItem& folder = Folder();
    Make(folder);
    // One that was made by somebody else may be open to others. If it isn't ours, it stays as it is.
    [[maybe_unused]] const int ignored = chmod(folder.NativePath().c_str(), OwnerOnly);
    String path;
    do
        path = folder.NativePath() + "/" + Moment() + String(Ending);
    while (FolderItem(path).Exists());
    return path;
}

std::shared_ptr<const FileDescriptor> Opened() {
    return std::make_shared<const FileDescriptor>(Folder().NativePath(), O_RDONLY | O_DIRECTORY);
}

std::vector<String> JournalPaths() {
    std::vector<String> paths;
    const std::shared_ptr<FolderItem> folder = SpecialFolder::State();
    if (!folder) return paths;
    for (const String& name : folder->ItemNames())
        if (name.ends_with(Ending)) paths.push_back(folder->NativePath() + "/" + name);
    return paths;
}

}  // namespace sorbel::StateFolder
