// The pieces that know no window: the document, the rules on it, its checks, and the exports.
#include <benchmark/benchmark.h>

#include "Documents.h"
#include "checks/Checker.h"
#include "checks/Statistics.h"
#include "editing/rules/ChangedStrings.h"
#include "editing/rules/Matching.h"
#include "editing/rules/WordComparison.h"
#include "interchange/DelimitedText.h"
#include "interchange/MoFile.h"
#include "interchange/StringFile.h"

namespace sorbel::bench {
namespace {

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMicrosecond);
}

/// Runs a piece on a document with an earlier version, and tells the time for each string.
template <typename Piece>
void OnDocument(benchmark::State& state, Piece piece) {
    const auto document = MakeDocument(state.range(0));
    AddVersion(*document);
    for ([[maybe_unused]] auto round : state)
        benchmark::DoNotOptimize(piece(*document));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Read(benchmark::State& state) {
    const String bytes = MakeDocument(state.range(0))->ToBytes();
    const auto file = std::make_shared<ByteBuffer>(bytes.size());
    bytes.copy(file->Data(), bytes.size());
    for ([[maybe_unused]] auto round : state) {
        LocalizedStringSet set;
        benchmark::DoNotOptimize(set.ReadBytes(file));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Read)->Apply(Sizes);

void Write(benchmark::State& state) {
    const auto document = MakeDocument(state.range(0));
    for ([[maybe_unused]] auto round : state)
        benchmark::DoNotOptimize(document->ToBytes());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Write)->Apply(Sizes);

void Clone(benchmark::State& state) {
    OnDocument(state, [](LocalizedStringSet& set) { return set.Clone(); });
}
BENCHMARK(Clone)->Apply(Sizes);

void Search(benchmark::State& state, StringView term) {
    const Finder finder(term);
    OnDocument(state, [&finder](LocalizedStringSet& set) {
        size_t found = 0;
        for (const auto& [identifier, entry] : set.Entries)
            found += MatchesName(identifier, finder, {}) || MatchesValue(entry.ItemAt(0).Value, finder, {});
        return found;
    });
}
BENCHMARK_CAPTURE(Search, some, "fil")->Apply(Sizes);
BENCHMARK_CAPTURE(Search, none, "zqx")->Apply(Sizes);
BENCHMARK_CAPTURE(Search, not_ascii, "grö")->Apply(Sizes);

void Untranslated(benchmark::State& state) {
    OnDocument(state, [](LocalizedStringSet& set) {
        size_t found = 0;
        for (const auto& [identifier, entry] : set.Entries)
            found += IsUntranslated(entry);
        return found;
    });
}
BENCHMARK(Untranslated)->Apply(Sizes);

void ChangedStrings(benchmark::State& state) {
    OnDocument(state, [](LocalizedStringSet& set) { return NewOrChangedStrings(set, *set.History.front()); });
}
BENCHMARK(ChangedStrings)->Apply(Sizes);

void Export(benchmark::State& state, String (*format)(const LocalizedStringSet&)) {
    OnDocument(state, format);
}
BENCHMARK_CAPTURE(Export, mo, ToMoFile)->Apply(Sizes);
BENCHMARK_CAPTURE(Export, delimited, ToDelimitedText)->Apply(Sizes);
BENCHMARK_CAPTURE(Export, string_file, ToStringFile)->Apply(Sizes);

/// What takes the rows of a document one by one.
template <typename Receiver>
void GiveRows(const LocalizedStringSet& set, Receiver& receiver) {
    for (const auto& [identifier, entry] : set.Entries)
        for (int64_t index = 0; index < entry.Count(); ++index) {
            const PlatformTable::Item& item = entry.ItemAt(index);
            receiver.Add({identifier, item.Platform, item.Value.Original, item.Value.Localized});
        }
}

void Check(benchmark::State& state, const checks::Rules& rules) {
    OnDocument(state, [&rules](LocalizedStringSet& set) {
        size_t found = 0;
        checks::Checker checker(
            rules, 2, [](const checks::Row& row) { return String(row.Identifier); },
            [&found](const checks::Row&, checks::Rule, const String&) { ++found; });
        GiveRows(set, checker);
        return found;
    });
}
checks::Rules AllRules() {
    checks::Rules rules;
    for (size_t number = 0; number < checks::RuleCount; ++number)
        rules.Set(static_cast<checks::Rule>(number));
    return rules;
}
BENCHMARK_CAPTURE(Check, usual, checks::Rules::Usual())->Apply(Sizes);
BENCHMARK_CAPTURE(Check, all, AllRules())->Apply(Sizes);

void Statistics(benchmark::State& state) {
    OnDocument(state, [](LocalizedStringSet& set) {
        checks::StatisticsCounter counter;
        GiveRows(set, counter);
        return counter.Counted().Words;
    });
}
BENCHMARK(Statistics)->Apply(Sizes);

/// So many words that the other text lacks, and the common word behind them or not.
String Words(int64_t count, char first, bool tail) {
    String text;
    for (int64_t number = 0; number < count; ++number)
        text += first + std::to_string(number) + " ";
    return tail ? text + "end" : text;
}

void Compare(benchmark::State& state, bool tail) {
    const String current = Words(state.range(0), 'a', tail), older = Words(state.range(0), 'b', tail);
    for ([[maybe_unused]] auto round : state)
        benchmark::DoNotOptimize(CompareWords(current, older));
}
BENCHMARK_CAPTURE(Compare, nothing_in_common, false)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Compare, common_tail, true)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace sorbel::bench

BENCHMARK_MAIN();
