#pragma once

#include <algorithm>

#include "scripting/compiler/Heap.h"
#include "scripting/compiler/Opcodes.h"
#include "scripting/compiler/Symbols.h"

namespace sorbel::script {

/// Where an exception goes that is raised between two operations.
struct Handler {
    uint32_t Start;
    uint32_t End;
    uint32_t Target;
};

struct Function {
    String Name;
    std::vector<Instruction> Code;
    std::vector<uint32_t> Lines;       // of each operation
    std::vector<Handler> Handlers;     // of places one behind the other
    std::vector<uint16_t> References;  // registers that count references and are released at the end
    std::vector<uint16_t> GivenBack;   // counting ByRef parameters, which the caller takes over
    std::vector<uint16_t> Fresh;       // those of them that are no parameters and start empty
    uint32_t Parameters = 0;           // the first registers
    uint32_t Registers = 0;
    uint32_t Window = 0;  // what it passes to others, behind its registers
    bool ResultIsReference = false;
    bool InLibrary = false;
};

/// What NewArray makes.
struct ArrayShape {
    const Type* T = nullptr;
    ElementKind Element = ElementKind::I64;
    uint32_t Rank = 1;
    const ClassInfo* Structure = nullptr;
};

/// An array that belongs to each value of a structure.
struct FixedArray {
    uint32_t Field;
    ArrayShape Shape;
    int64_t Last;  // index, not below 0
};

struct ClassInfo {
    const Type* T = nullptr;
    ClassInfo* Base = nullptr;
    bool IsStructure = false;
    std::vector<bool> ReferenceField;
    std::vector<const ClassInfo*> StructureField;  // null for other fields
    std::vector<FixedArray> FixedArrays;
    std::vector<uint32_t> Virtual;  // functions
    std::unordered_map<int, uint32_t> BySelector;
    std::vector<uint32_t> Ancestors;  // the indices of all classes and interfaces that it is, in order
    int Destructor = -1;
    [[nodiscard]] bool Is(uint32_t index) const {
        if (Ancestors.size() > 16) return std::binary_search(Ancestors.begin(), Ancestors.end(), index);
        for (const uint32_t ancestor : Ancestors)
            if (ancestor == index) return true;
        return false;
    }
};

/// How an array keeps elements of a type.
[[nodiscard]] ElementKind ElementKindOf(const Type& type);

/// What MakeDelegate makes: a function, or a place in a table of the target's class.
struct DelegateShape {
    const Type* T = nullptr;
    enum class How : uint8_t { Static, Instance, Virtual, Interface } Calls = How::Static;
    uint32_t Index = 0;
    bool Weak = false;
};

/// What the machine runs. Everything that the operations refer to by number is here.
struct Program {
    std::vector<Function> Functions;  // the first is the main program
    std::deque<ClassInfo> Classes;
    std::vector<Slot> Constants;
    std::vector<ConstantText> Texts;
    std::vector<ArrayShape> Arrays;
    std::vector<DelegateShape> Delegates;
    std::vector<const Type*> BoxTypes;
    std::unordered_map<String, uint32_t> ExceptionClasses;  // by folded name
};

}  // namespace sorbel::script
