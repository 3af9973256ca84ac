#pragma once

#include <vector>

#include "platform/Text.h"

namespace sorbel {

/// A kind of file, known by its extensions.
struct FileType {
    String Name;
    String Extensions;  ///< with their dots, joined by ";"
    String MacType;
    String MacCreator;
    String MimeType;
    bool Imported = false;
    String Identifier;  ///< uniform type identifier, may be empty
    std::vector<String> ConformsTo;

    [[nodiscard]] bool Matches(StringView fileName) const;

    /// The types that `FolderItem::Type` tries, in order.
    static void Register(std::vector<FileType> types);
    [[nodiscard]] static const std::vector<FileType>& Registered();
};

/// A filter of a file dialog: the names of its types in order, joined by ";".
[[nodiscard]] String operator+(const FileType& a, const FileType& b);
[[nodiscard]] String operator+(const String& filter, const FileType& type);

}  // namespace sorbel
