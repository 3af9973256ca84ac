#include <utility>

#include "scripting/compiler/Library.h"

namespace sorbel::script {

namespace {

/// Whether there is a method to call: that of a weak delegate goes with its object.
bool Answers(const Delegate* delegate) {
    return delegate && (!delegate->HasTarget || delegate->Target);
}

Slot& HandlerOf(const Slot* a) {
    if (!a[0].O) FailNil();
    return a[0].O->Fields()[a[2].I];
}

void Add(Machine& machine, Slot* a) {
    Slot& handler = HandlerOf(a);
    if (!Answers(a[1].G)) FailNil();
    if (Answers(handler.G)) throw Failure{"InvalidArgumentException", "The event has a handler already."};
    Memory::Retain(a[1].H);
    script::Heap* gone = std::exchange(handler.H, a[1].H);
    machine.Store().Release(gone);
}

// Takes away only what was added: the same method of the same object.
void Remove(Machine& machine, Slot* a) {
    Slot& handler = HandlerOf(a);
    const Delegate *known = handler.G, *given = a[1].G;
    if (!known || !given || known->Function != given->Function || known->Target != given->Target) return;
    machine.Store().Release(std::exchange(handler.H, nullptr));
}

const NativeFunction table[] = {
    {".AddHandler", "object V handler V field I", "", Add, false},
    {".RemoveHandler", "object V handler V field I", "", Remove, false},
    {".Handled", "handler V", "B", [](Machine&, Slot* a) { a->I = Answers(a->G); }, false},
    {".NoStep", "", "",
     [](Machine&, Slot*) {
         throw Failure{"InvalidArgumentException", "The step of a For loop cannot be 0."};
     },
     false},
};

}  // namespace

std::span<const NativeFunction> EventFunctions() {
    return table;
}

}  // namespace sorbel::script
