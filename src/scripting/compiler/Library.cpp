#include "scripting/compiler/Library.h"

#include <unordered_map>

namespace sorbel::script {

namespace {

struct Table {
    std::vector<const NativeFunction*> Functions;
    std::unordered_map<String, std::vector<const NativeFunction*>> ByName;
    std::unordered_map<const NativeFunction*, uint32_t> Indices;

    Table() {
        for (const auto part :
             {TextFunctions(), ConversionFunctions(), NumberFunctions(), ArrayFunctions(), SortingFunctions(),
              EventFunctions(), VariantFunctions(), DictionaryFunctions()})
            for (const NativeFunction& function : part) {
                ByName[Fold(function.Name)].push_back(&function);
                Indices.emplace(&function, static_cast<uint32_t>(Functions.size()));
                Functions.push_back(&function);
            }
    }
};

const Table& TheTable() {
    static const Table table;
    return table;
}

}  // namespace

std::vector<const NativeFunction*> FindNative(StringView name) {
    const auto found = TheTable().ByName.find(Fold(name));
    return found == TheTable().ByName.end() ? std::vector<const NativeFunction*>() : found->second;
}

const NativeFunction& Native(StringView name) {
    return *TheTable().ByName.at(Fold(name)).front();
}

uint32_t NativeIndex(const NativeFunction& function) {
    return TheTable().Indices.at(&function);
}

const NativeFunction* const* NativeTable() {
    return TheTable().Functions.data();
}

// The exceptions, of which the machine fills the first three fields of what it raises itself, and the class
// Dictionary, whose methods have their bodies in the library.
StringView Prelude() {
    return R"(Class RuntimeException
Property Message As String
Property ErrorNumber As Integer
Private Property mLine As Integer
Sub Constructor(message As String = "", errorNumber As Integer = 0)
Self.Message = message
Self.ErrorNumber = errorNumber
End Sub
End Class
Class OutOfBoundsException Inherits RuntimeException
End Class
Class NilObjectException Inherits RuntimeException
End Class
Class DivisionByZeroException Inherits RuntimeException
End Class
Class TypeMismatchException Inherits RuntimeException
End Class
Class IllegalCastException Inherits RuntimeException
End Class
Class StackOverflowException Inherits RuntimeException
End Class
Class KeyNotFoundException Inherits RuntimeException
End Class
Class UnsupportedFormatException Inherits RuntimeException
End Class
Class InvalidArgumentException Inherits RuntimeException
End Class
Class IOException Inherits RuntimeException
End Class
Interface Iterable
End Interface
Class Dictionary
Private Property mEntries As Object
Function Value(key As Variant) As Variant
End Function
Sub Value(key As Variant, Assigns value As Variant)
End Sub
Function HasKey(key As Variant) As Boolean
End Function
Function Lookup(key As Variant, otherwise As Variant) As Variant
End Function
Sub Remove(key As Variant)
End Sub
Function Count() As Integer
End Function
Function Keys() As Variant()
End Function
Function Values() As Variant()
End Function
End Class
)";
}

}  // namespace sorbel::script
