#pragma once

#include <fstream>

#include "platform/FolderItem.h"
#include "support/TemporaryFolder.h"

namespace sorbel::fuzz {

/// A file that a target writes its input to, since imports read files. One for the whole run.
inline FolderItem FileWith(StringView name, StringView contents) {
    static const TemporaryFolder folder;
    const String path = folder / String(name);
    std::ofstream(path, std::ios::binary) << contents;
    return FolderItem(path);
}

}  // namespace sorbel::fuzz
