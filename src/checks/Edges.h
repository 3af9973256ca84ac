#pragma once

#include "platform/Text.h"

namespace sorbel::checks {

/// The white space (Unicode's White_Space) at both ends of a text. A text of nothing else has it all at the
/// start. A no-break space in front of ":", ";", "!", "?", "%" or "»" belongs to the mark, as in French.
struct Edges {
    StringView Start, End;
};
[[nodiscard]] Edges FindEdges(StringView text);

/// Whether two pieces of white space are the same, whatever their line ends are.
[[nodiscard]] bool SameWhiteSpace(StringView a, StringView b);

/// White space in words, such as "2 blanks, a line break", or "none".
[[nodiscard]] String DescribeWhiteSpace(StringView blanks);

}  // namespace sorbel::checks
