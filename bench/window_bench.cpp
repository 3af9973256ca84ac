// What a user does in a document window, through the models that the screen shows. Documents of one size
// share a window; each operation leaves it as it found it.
#include <benchmark/benchmark.h>

#include "Documents.h"
#include "Workbench.h"

namespace sorbel::bench {
namespace {

/// The window in use. One at a time, since the program's clock and colours are shared.
Workbench& WindowOf(int64_t count) {
    static int64_t present = 0;
    static std::unique_ptr<BenchFiles> files;
    static std::unique_ptr<Workbench> workbench;
    if (present != count) {
        workbench.reset();
        files = std::make_unique<BenchFiles>(count);
        workbench = std::make_unique<Workbench>(files->Base());
        present = count;
    }
    return *workbench;
}

void Run(benchmark::State& state, const Operation& operation) {
    Workbench& workbench = WindowOf(state.range(0));
    for ([[maybe_unused]] auto round : state)
        state.SetIterationTime(Measure(operation, workbench));
}

void Register() {
    for (const int64_t count : {1000, 10000, 100000, 1000000})
        for (const Operation& operation : Operations())
            benchmark::RegisterBenchmark(operation.Name, Run, operation)
                ->Arg(count)
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond)
                ->MinTime(0.05);
}

}  // namespace
}  // namespace sorbel::bench

int main(int count, char** words) {
    benchmark::Initialize(&count, words);
    if (benchmark::ReportUnrecognizedArguments(count, words)) return 1;
    sorbel::bench::Register();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
