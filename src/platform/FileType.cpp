#include "platform/FileType.h"

namespace sorbel {

namespace {

std::vector<FileType>& RegisteredTypes() {
    static std::vector<FileType> types;
    return types;
}

}  // namespace

bool FileType::Matches(StringView fileName) const {
    for (const String& extension : Split(Extensions, ";"))
        if (!extension.empty() && Equal(Right(fileName, Len(extension)), extension)) return true;
    return false;
}

void FileType::Register(std::vector<FileType> types) {
    RegisteredTypes() = std::move(types);
}

const std::vector<FileType>& FileType::Registered() {
    return RegisteredTypes();
}

String operator+(const FileType& a, const FileType& b) {
    return a.Name + b;
}

String operator+(const String& filter, const FileType& type) {
    return filter + ";" + type.Name;
}

}  // namespace sorbel
