#pragma once

#include <span>

#include "scripting/compiler/Machine.h"

namespace sorbel::script {

// The parts of the library, each a table of its functions.
[[nodiscard]] std::span<const NativeFunction> TextFunctions();
[[nodiscard]] std::span<const NativeFunction> ConversionFunctions();
[[nodiscard]] std::span<const NativeFunction> NumberFunctions();
[[nodiscard]] std::span<const NativeFunction> ArrayFunctions();
[[nodiscard]] std::span<const NativeFunction> SortingFunctions();
[[nodiscard]] std::span<const NativeFunction> EventFunctions();
[[nodiscard]] std::span<const NativeFunction> VariantFunctions();
[[nodiscard]] std::span<const NativeFunction> DictionaryFunctions();

/// The array that an argument holds; one that is nothing fails.
[[nodiscard]] Array& HeldArray(const Slot& slot);
/// The same, of one dimension.
[[nodiscard]] Array& FlatArray(const Slot& slot);
/// An element, borrowed.
[[nodiscard]] Slot ReadElement(const Array& array, int64_t index);
/// Puts a value in a place that holds nothing yet, with a reference of its own.
void WriteElement(Array& array, int64_t index, Slot value);

/// Whether two values of Variants are the same: texts without regard to letter case, numbers by their value,
/// objects and arrays by being one. What differs in kind is never the same.
[[nodiscard]] bool SameValue(const Box* a, const Box* b);

/// What a whole number is that a call leaves out.
inline constexpr int64_t Missing = INT64_MIN;
[[nodiscard]] inline int64_t Given(int64_t value, int64_t otherwise) {
    return value == Missing ? otherwise : value;
}

/// The number that a text begins with; 0 if none.
[[nodiscard]] double NumberOf(StringView text);
[[nodiscard]] int64_t WholeNumberOf(StringView text);
[[nodiscard]] String TextOf(double value);
/// `value` by a pattern of `#`, `0`, `.`, `,`, `%` and words; a second pattern behind `;` is for values below
/// 0.
[[nodiscard]] String FormatNumber(double value, StringView pattern);

}  // namespace sorbel::script
