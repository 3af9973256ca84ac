#include <chrono>
#include <cmath>

#include "platform/Clock.h"
#include "platform/Color.h"
#include "scripting/compiler/Library.h"

namespace sorbel::script {

namespace {

constexpr double Pi = 3.14159265358979323846;

template <double (*Function)(double)>
void Apply(Machine&, Slot* a) {
    a->D = Function(a->D);
}

unsigned Part(int64_t value) {
    return static_cast<unsigned>(std::min<int64_t>(std::max<int64_t>(value, 0), 255));
}

int64_t Within(Machine& machine, int64_t low, int64_t high) {
    if (high < low) std::swap(low, high);
    const uint64_t span = static_cast<uint64_t>(high) - static_cast<uint64_t>(low) + 1;
    const uint64_t random = machine.Random();
    return static_cast<int64_t>(static_cast<uint64_t>(low) + (span == 0 ? random : random % span));
}

const NativeFunction table[] = {
    {"Abs", "number I", "I",
     [](Machine&, Slot* a) {
         if (a->I < 0) a->U = 0 - a->U;
     },
     true},
    {"Abs", "number U", "U", [](Machine&, Slot*) {}, true},
    {"Abs", "number D", "D", Apply<std::fabs>, true},
    {"Sqrt", "number D", "D", Apply<std::sqrt>, true},
    {"Sin", "angle D", "D", Apply<std::sin>, true},
    {"Cos", "angle D", "D", Apply<std::cos>, true},
    {"Tan", "angle D", "D", Apply<std::tan>, true},
    {"Asin", "number D", "D", Apply<std::asin>, false},
    {"Acos", "number D", "D", Apply<std::acos>, false},
    {"Atan", "number D", "D", Apply<std::atan>, false},
    {"Atan2", "y D x D", "D", [](Machine&, Slot* a) { a->D = std::atan2(a[0].D, a[1].D); }, false},
    {"Exp", "number D", "D", Apply<std::exp>, true},
    {"Log", "number D", "D", Apply<std::log>, true},
    {"Pow", "number D power D", "D", [](Machine&, Slot* a) { a->D = std::pow(a[0].D, a[1].D); }, true},
    {"Ceil", "number D", "D", Apply<std::ceil>, true},
    {"Ceiling", "number D", "D", Apply<std::ceil>, true},
    {"Floor", "number D", "D", Apply<std::floor>, true},
    {"Round", "number D", "D", Apply<std::round>, true},
    {"Sign", "number D", "I", [](Machine&, Slot* a) { a->I = (a->D > 0) - (a->D < 0); }, true},
    {"Sgn", "number D", "I", [](Machine&, Slot* a) { a->I = (a->D > 0) - (a->D < 0); }, true},
    {"Min", "a I b I", "I", [](Machine&, Slot* a) { a->I = std::min(a[0].I, a[1].I); }, true},
    {"Min", "a U b U", "U", [](Machine&, Slot* a) { a->U = std::min(a[0].U, a[1].U); }, true},
    {"Min", "a D b D", "D", [](Machine&, Slot* a) { a->D = std::fmin(a[0].D, a[1].D); }, true},
    {"Max", "a I b I", "I", [](Machine&, Slot* a) { a->I = std::max(a[0].I, a[1].I); }, true},
    {"Max", "a U b U", "U", [](Machine&, Slot* a) { a->U = std::max(a[0].U, a[1].U); }, true},
    {"Max", "a D b D", "D", [](Machine&, Slot* a) { a->D = std::fmax(a[0].D, a[1].D); }, true},
    {"Rnd", "", "D", [](Machine& m, Slot* a) { a->D = static_cast<double>(m.Random() >> 11) * 0x1p-53; },
     false},
    {"RandomInRange", "low I high I", "I", [](Machine& m, Slot* a) { a->I = Within(m, a[0].I, a[1].I); },
     false},
    {"ToRadians", "degrees D", "D", [](Machine&, Slot* a) { a->D *= Pi / 180; }, true},
    {"RGB", "red I green I blue I | alpha I", "C",
     [](Machine&, Slot* a) {
         const unsigned alpha = Part(Given(a[3].I, 0));
         a->U = Color::FromRGB(Part(a[0].I), Part(a[1].I), Part(a[2].I), alpha).Value;
     },
     false},
    {"Red", "colour C", "I", [](Machine&, Slot* a) { a->I = Color{static_cast<uint32_t>(a->U)}.Red(); },
     true},
    {"Green", "colour C", "I", [](Machine&, Slot* a) { a->I = Color{static_cast<uint32_t>(a->U)}.Green(); },
     true},
    {"Blue", "colour C", "I", [](Machine&, Slot* a) { a->I = Color{static_cast<uint32_t>(a->U)}.Blue(); },
     true},
    {"Alpha", "colour C", "I", [](Machine&, Slot* a) { a->I = Color{static_cast<uint32_t>(a->U)}.Alpha(); },
     true},
    {"Ticks", "", "I", [](Machine&, Slot* a) { a->I = Ticks(); }, false},
    {"Microseconds", "", "D",
     [](Machine&, Slot* a) {
         using namespace std::chrono;
         a->D = duration<double, std::micro>(steady_clock::now().time_since_epoch()).count();
     },
     false},
    {"Print", "text S", "",
     [](Machine& m, Slot* a) {
         m.Store().Expect(3 * ViewOf(a->T).size());
         m.Words().Print(ViewOf(a->T));
     },
     false},
    {"Input", "| prompt S", "S", [](Machine& m, Slot* a) { m.Give(*a, m.Words().Input(ViewOf(a->T))); },
     false},
};

}  // namespace

std::span<const NativeFunction> NumberFunctions() {
    return table;
}

}  // namespace sorbel::script
