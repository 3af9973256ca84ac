#pragma once

#include "platform/FolderItem.h"
#include "platform/Text.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// What sort of built application translations can go into.
enum class ApplicationKind {
    Other,   ///< has no place for them
    Mac,     ///< a folder named with ".app"
    Windows  ///< named with ".exe"
};

[[nodiscard]] ApplicationKind KindOfApplication(const FolderItem& application);

/// Puts the translations into an application of a kind that has a place for them, which is made where that is
/// usual and must exist otherwise. Fails with IOException or NilObjectException; a file that was already
/// written stays.
void ExportIntoApplication(const LocalizedStringSet& set, const FolderItem& application);

/// What to tell whoever chose an application of another kind, in two sentences.
inline constexpr StringView NoPlaceInApplication = "Unable to export to application.";
inline constexpr StringView AdviceOnApplications =
    "Be sure to select a version of your application that was built with dynamic constants.";

}  // namespace sorbel
