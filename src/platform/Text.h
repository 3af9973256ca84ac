#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sorbel {

/// Text is UTF-8 bytes. Bytes that are not valid UTF-8 are kept as they are and count as one character each,
/// so any bytes pass through every function here unharmed.
using String = std::string;
using StringView = std::string_view;

// --- Comparison ---

/// The plain equality of two texts: letter case is ignored by Unicode simple case folding, code point by code
/// point, without normalisation.
[[nodiscard]] bool Equal(StringView a, StringView b);

/// A hash that is the same for texts that are `Equal`.
[[nodiscard]] uint32_t FoldedHash(StringView text);

/// The byte-exact comparison: below, equal to or above 0. `mode` is 0, the only one there is.
[[nodiscard]] int StrComp(StringView a, StringView b, int mode);

/// Simple case folding of a whole text.
[[nodiscard]] String Fold(StringView text);

/// The order of two texts that `Fold` has made: below, equal to or above 0.
[[nodiscard]] int CompareFolded(StringView a, StringView b);

// --- Counting and cutting, in characters (code points) ---

[[nodiscard]] int64_t Len(StringView text);  ///< characters
[[nodiscard]] inline int64_t LenB(StringView text) {
    return static_cast<int64_t>(text.size());
}  ///< bytes
[[nodiscard]] String Left(StringView text, int64_t count);
[[nodiscard]] String Right(StringView text, int64_t count);
/// `start` counts from 1; a start beyond the end gives the empty text.
[[nodiscard]] String Mid(StringView text, int64_t start);
[[nodiscard]] String Mid(StringView text, int64_t start, int64_t count);

/// One character of UTF-8, or one byte that is not part of valid UTF-8, from the head of `text`, which must
/// not be empty. `codePoint` is -1 for such a byte.
struct Character {
    StringView Bytes;
    int32_t CodePoint;
};
[[nodiscard]] Character FirstCharacter(StringView text);
/// The same from its end.
[[nodiscard]] Character LastCharacter(StringView text);

// --- Searching ---

/// The 1-based character position of `term` at or behind `start`, 0 if it is not there. Ignores letter case;
/// a start of 0 or 1 is the beginning; an empty term is found at the start, unless that is beyond the text.
[[nodiscard]] int64_t InStr(int64_t start, StringView text, StringView term);

// --- Taking apart and putting together ---

/// Unicode White_Space taken off both ends.
[[nodiscard]] String Trim(StringView text);
/// The same as a part of the text.
[[nodiscard]] StringView Trimmed(StringView text);
/// The fields between delimiters; an empty text gives one empty field. The delimiter is
/// compared byte by byte.
[[nodiscard]] std::vector<String> Split(StringView text, StringView delimiter);
[[nodiscard]] String Join(const std::vector<String>& fields, StringView delimiter);
/// Field `index` (from 1) between delimiters, empty if there is none.
[[nodiscard]] String NthField(StringView text, StringView delimiter, int64_t index);
[[nodiscard]] int64_t CountFields(StringView text, StringView delimiter);
/// Every occurrence, byte by byte.
[[nodiscard]] String ReplaceAll(StringView text, StringView what, StringView with);
/// CR LF, CR and LF each become `ending`.
[[nodiscard]] String ReplaceLineEndings(StringView text, StringView ending);
/// The same, appended to `to`.
void ReplaceLineEndings(StringView text, StringView ending, String& to);

// --- Characters and encodings ---

[[nodiscard]] String Chr(int32_t codePoint);  ///< one character; U+FFFD for what is none
[[nodiscard]] String ChrB(uint8_t byte);      ///< one byte
/// UTF-16, big-endian, no byte-order mark. A byte that is not valid UTF-8 becomes U+FFFD.
[[nodiscard]] String EncodeUtf16BE(StringView text);
/// The same, appended to `to`.
void EncodeUtf16BE(StringView text, String& to);

inline constexpr StringView EndOfLine = "\n";  ///< the native line end

}  // namespace sorbel
