#include <charconv>
#include <cmath>

#include "scripting/compiler/Library.h"

namespace sorbel::script {

namespace {

double RealOf(Machine& machine, Box* box) {
    return Unbox(machine, box, *machine.KnownTypes().Of(Kind::Double)).D;
}

bool IsText(const Box* box) {
    return box && box->T->Is(Kind::String);
}

bool IsWhole(const Box* box) {
    return box && (box->T->IsInteger() || box->T->Is(Kind::Boolean));
}

void GiveBox(Machine& machine, Slot& to, Kind kind, Slot value) {
    to.V = machine.Store().NewBox(machine.KnownTypes().Of(kind), value);
}

/// The text that a value reads as, for as long as it is needed.
struct TextOfBox {
    TextOfBox(Machine& machine, Box* box)
        : Value(Unbox(machine, box, *machine.KnownTypes().Of(Kind::String))), Store(machine.Store()) {}
    TextOfBox(const TextOfBox&) = delete;
    TextOfBox& operator=(const TextOfBox&) = delete;
    ~TextOfBox() { Store.Release(Value.H); }
    Slot Value;
    Memory& Store;
};

// One text is enough: the other value is joined to it as the text that it reads as.
void Joined(Machine& machine, Slot* a) {
    const TextOfBox left(machine, a[0].V), right(machine, a[1].V);
    Slot value;
    AppendText(machine.Store(), value, left.Value, right.Value);
    try {
        GiveBox(machine, a[0], Kind::String, value);
    } catch (...) {
        machine.Store().Release(value.H);
        throw;
    }
    machine.Store().Release(value.H);
}

// Arithmetic of values whose types are only known now: texts are joined, whole numbers stay whole.
template <Op Operator>
void Work(Machine& machine, Slot* a) {
    Box *left = a[0].V, *right = a[1].V;
    Slot value;
    if (Operator == Op::Add && (IsText(left) || IsText(right))) return Joined(machine, a);
    if (IsWhole(left) && IsWhole(right) && Operator != Op::Divide && Operator != Op::Power) {
        const uint64_t x = left->Value.U, y = right->Value.U;
        if ((Operator == Op::IntegerDivide || Operator == Op::Modulo) && y == 0)
            throw Failure{"DivisionByZeroException", "A whole number cannot be divided by zero."};
        const bool minusOne = y == UINT64_MAX;
        if (Operator == Op::Add) value.U = x + y;
        if (Operator == Op::Subtract) value.U = x - y;
        if (Operator == Op::Multiply) value.U = x * y;
        if (Operator == Op::IntegerDivide)
            value.I = minusOne ? static_cast<int64_t>(0 - x) : left->Value.I / right->Value.I;
        if (Operator == Op::Modulo) value.I = minusOne ? 0 : left->Value.I % right->Value.I;
        return GiveBox(machine, a[0], Kind::Int64, value);
    }
    const double x = RealOf(machine, left), y = RealOf(machine, right);
    if (Operator == Op::Add) value.D = x + y;
    if (Operator == Op::Subtract) value.D = x - y;
    if (Operator == Op::Multiply) value.D = x * y;
    if (Operator == Op::Divide)
        value.D = y != 0 ? x / y
                  : x == 0 || std::isnan(x)
                      ? NAN
                      : std::copysign(INFINITY, std::copysign(1, x) * std::copysign(1, y));
    if (Operator == Op::Power) value.D = std::pow(x, y);
    if (Operator == Op::IntegerDivide) value.D = std::trunc(y != 0 ? x / y : NAN);
    if (Operator == Op::Modulo) value.D = std::fmod(x, y);
    GiveBox(machine, a[0], Kind::Double, value);
}

// Below, equal to or above 0; 2 where there is no order.
void Compare(Machine& machine, Slot* a) {
    Box *left = a[0].V, *right = a[1].V;
    if (!left || !right) {
        a[0].I = left == right ? 0 : 2;
    } else if (IsText(left) && IsText(right)) {
        const int order =
            SameText(left->Value.T, right->Value.T) ? 0 : CompareTexts(left->Value.T, right->Value.T);
        a[0].I = (order > 0) - (order < 0);
    } else if (IsWhole(left) && IsWhole(right)) {
        a[0].I = (left->Value.I > right->Value.I) - (left->Value.I < right->Value.I);
    } else if (left->T->IsReference() && !IsText(left) && right->T->IsReference()) {
        a[0].I = left->Value.H == right->Value.H ? 0 : 2;
    } else {
        const double x = RealOf(machine, left), y = RealOf(machine, right);
        a[0].I = x < y ? -1 : x > y ? 1 : x == y ? 0 : 2;
    }
}

// The same bits are a number below 0 in one type and a large one in another.
bool SameInteger(const Box& a, const Box& b) {
    const auto below = [](const Box& box) {
        return !box.T->Is(Kind::UInt64) && box.Value.I < 0;
    };
    return a.Value.U == b.Value.U && below(a) == below(b);
}

bool SameNumber(const Box& a, const Box& b) {
    if (a.T->IsInteger() && b.T->IsInteger()) return SameInteger(a, b);
    if (a.T->IsReal() && b.T->IsReal())
        return a.Value.D == b.Value.D || (std::isnan(a.Value.D) && std::isnan(b.Value.D));
    const Box &whole = a.T->IsInteger() ? a : b, &real = a.T->IsInteger() ? b : a;
    const double value = real.Value.D;
    // As whole numbers, since a real number has fewer digits.
    if (!(value >= -0x1p63 && value < 0x1p64) || value != std::trunc(value)) return false;
    if (value >= 0x1p63) return whole.T->Is(Kind::UInt64) && whole.Value.U == static_cast<uint64_t>(value);
    if (whole.T->Is(Kind::UInt64) && whole.Value.I < 0) return false;
    return whole.Value.I == static_cast<int64_t>(value);
}

bool IsNumeric(const Box* box) {
    if (!box) return false;
    if (!IsText(box)) return box->T->IsNumber();
    const StringView text = Trimmed(ViewOf(box->Value.T));
    return !text.empty() && text.find_first_not_of("0123456789+-.eE") == StringView::npos &&
           text.find_first_of("0123456789") != StringView::npos;
}

const NativeFunction table[] = {
    {".Add", "a V b V", "V", Work<Op::Add>, false},
    {".Subtract", "a V b V", "V", Work<Op::Subtract>, false},
    {".Multiply", "a V b V", "V", Work<Op::Multiply>, false},
    {".Divide", "a V b V", "V", Work<Op::Divide>, false},
    {".IntegerDivide", "a V b V", "V", Work<Op::IntegerDivide>, false},
    {".Modulo", "a V b V", "V", Work<Op::Modulo>, false},
    {".Power", "a V b V", "V", Work<Op::Power>, false},
    {".Compare", "a V b V", "I", Compare, false},
    {"IsNull", "value V", "B", [](Machine&, Slot* a) { a->I = a->V == nullptr; }, true},
    {"IsNumeric", "value V", "B", [](Machine&, Slot* a) { a->I = IsNumeric(a->V); }, false},
    {"TypeName", "value V", "S",
     [](Machine& m, Slot* a) {
         const Box* box = a->V;
         const bool object = box && box->T->IsObject() && box->Value.O;
         m.Give(*a, !box ? "Nil" : object ? box->Value.O->Class->T->Name : box->T->Name);
     },
     false},
};

[[noreturn]] void FailConversion(const Type& from, const Type& to) {
    FailType("A value of type " + from.Name + " cannot become one of type " + to.Name + ".");
}

int64_t Narrow(int64_t value, Kind kind) {
    switch (kind) {
        case Kind::Int8:
            return static_cast<int8_t>(value);
        case Kind::Int16:
            return static_cast<int16_t>(value);
        case Kind::Int32:
            return static_cast<int32_t>(value);
        case Kind::UInt8:
            return static_cast<uint8_t>(value);
        case Kind::UInt16:
            return static_cast<uint16_t>(value);
        case Kind::UInt32:
        case Kind::Color:
            return static_cast<uint32_t>(value);
        case Kind::Boolean:
            return value != 0;
        default:
            return value;
    }
}

// The digits of a text that is too large for an Integer.
uint64_t UnsignedNumberOf(StringView text) {
    const size_t first = text.find_first_not_of('+');
    if (first == StringView::npos) return 0;
    uint64_t value = 0;
    const char* last = text.data() + text.size();
    const auto result = std::from_chars(text.data() + first, last, value);
    return result.ec == std::errc::result_out_of_range ? UINT64_MAX : value;
}

Slot UnboxNumber(const Box& box, const Type& to) {
    Slot value;
    const Type& from = *box.T;
    double real = 0;
    if (from.Is(Kind::String))
        real = NumberOf(ViewOf(box.Value.T));
    else if (from.IsReal())
        real = box.Value.D;
    else if (from.IsReference())
        FailConversion(from, to);
    else
        real = from.Is(Kind::UInt64) ? static_cast<double>(box.Value.U) : static_cast<double>(box.Value.I);
    if (to.IsReal()) {
        value.D = to.Is(Kind::Single) && std::fabs(real) < 3.4e38
                      ? static_cast<double>(static_cast<float>(real))
                      : real;
        return value;
    }
    if (from.Is(Kind::String)) {
        const StringView text = Trimmed(ViewOf(box.Value.T));
        value.I = to.Is(Kind::Boolean) ? Equal(text, "true") : WholeNumberOf(text);
        if (to.Is(Kind::UInt64) && value.I == INT64_MAX) value.U = UnsignedNumberOf(text);
    } else if (from.IsReal()) {
        if (to.Is(Kind::UInt64))
            value.U = UnsignedOf(real);
        else
            value.I = WholeOf(real);
    } else {
        value.I = box.Value.I;
    }
    value.I = Narrow(value.I, to.K);
    return value;
}

}  // namespace

bool SameValue(const Box* a, const Box* b) {
    if (a == b) return true;
    if (!a || !b) return false;
    if (IsText(a) && IsText(b)) return SameText(a->Value.T, b->Value.T);
    if (a->T->IsNumber() && b->T->IsNumber()) return SameNumber(*a, *b);
    if (a->T->IsObject() && b->T->IsObject()) return a->Value.O == b->Value.O;
    return a->T == b->T && a->Value.U == b->Value.U;
}

Slot Unbox(Machine& machine, Box* box, const Type& type) {
    Slot value;
    if (type.Is(Kind::Variant)) {
        Memory::Retain(box);
        value.V = box;
        return value;
    }
    if (!type.IsReference()) return box ? UnboxNumber(*box, type) : value;
    if (!box) return value;
    const Type& from = *box->T;
    if (type.Is(Kind::String) && !from.IsReference()) {
        if (from.Is(Kind::Boolean))
            machine.Give(value, box->Value.I ? "True" : "False");
        else
            machine.Give(value, from.IsReal()           ? TextOf(box->Value.D)
                                : from.Is(Kind::UInt64) ? std::to_string(box->Value.U)
                                                        : std::to_string(box->Value.I));
        return value;
    }
    value = box->Value;
    bool fits = &from == &type;
    if (type.IsObject() && from.IsObject()) fits = !value.O || value.O->Class->Is(type.Index);
    if (!fits) FailConversion(from, type);
    Memory::Retain(value.H);
    return value;
}

std::span<const NativeFunction> VariantFunctions() {
    return table;
}

}  // namespace sorbel::script
