#pragma once

#include <vector>

#include "platform/FileType.h"

namespace sorbel {

/// The file types that the program knows.
namespace FileTypes1 {

const FileType& NorvaneLocale();
const FileType& TabDelimited();
const FileType& KestrumLocale();
const FileType& Application();
const FileType& SorbelScript();

/// All of them, in the order in which a file's name is tried.
const std::vector<FileType>& pAllFileTypes();

}  // namespace FileTypes1

/// Registers the types with `FileType`. Once, before the application object exists.
void _InitFileTypes();

}  // namespace sorbel
