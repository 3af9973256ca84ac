#pragma once

#include <QString>
#include <climits>

#include "platform/Text.h"

namespace sorbel {

/// What a user's edit makes of a text's bytes. `edited` is the whole text after the edit, in the form that
/// `ToEditable` gives; everything outside the edited stretch keeps its bytes, line ends and invalid bytes
/// included. New line breaks take the kind that the text uses first, LF if it has none.
[[nodiscard]] String SpliceEdit(StringView original, QStringView edited);

/// The stretch in which two texts differ: what they have in common before and behind it, in UTF-16 units,
/// with no surrogate pair divided. Where a stretch could have been inserted or removed in several places, the
/// last one is taken whose head is not longer than `longestHead`.
struct Difference {
    qsizetype Head;
    qsizetype Tail;
};
[[nodiscard]] Difference Compare(QStringView before, QStringView after, qsizetype longestHead = INT_MAX);

}  // namespace sorbel
