#include "scripting/Samples.h"

namespace sorbel::Scripting {

// clang-format off
const StringView Sample = R"script(//  Reverses the text in the TranslatedText field

if ShowDialog("Are you sure you want to reverse this translated string?", "", "No", "Yes", "Maybe", 1) <> "Yes" then
  Return
end if

Dim default As String = DefaultText
Dim translated As String = TranslatedText

dim newString as String
for i as integer = len(translated) downto 1
  newString = newString + mid(translated,i,1)
next i

TranslatedText = default + ": " + newString)script";

const StringView LoopSample = R"script(//  Reverses the text in the TranslatedText field

// Store the selected row 
dim InitialRow as integer = CurrentRow

// Move to each row and reverse the text
For i as integer = FirstRow to LastRow
	CurrentRow = i
	Dim default As String = DefaultText
	Dim translated As String = TranslatedText

	dim newString as String
	for j as integer = len(translated) downto 1
		newString = newString + mid(translated, j, 1)
	next j

	TranslatedText = default + ": " + newString
Next i

// Restore the selected row
CurrentRow = InitialRow
)script";
// clang-format on

}  // namespace sorbel::Scripting
