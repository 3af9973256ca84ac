#include <ctime>

#include "Workbench.h"
#include "support/BlindGraphics.h"

namespace sorbel::bench {

namespace {

constexpr StringView Locale = ".import.kestrum_locale", Delimited = ".import.txt";
constexpr int64_t Page = 20;  // rows

void VisitEntries(Workbench& w) {
    volatile size_t seen = 0;
    for (const auto& [identifier, entry] : w.Window().StringSet->Entries)
        for (int64_t index = 0; index < entry.Count(); ++index)
            seen = seen + identifier.View().size() + entry.ItemAt(index).Value.Localized.View().size();
}

void ReadEntries(Workbench& w) {
    volatile uint32_t seen = 0;
    for (const auto& [identifier, entry] : w.Window().StringSet->Entries) {
        seen = seen + FoldedHash(identifier);
        for (int64_t index = 0; index < entry.Count(); ++index)
            seen = seen + FoldedHash(entry.ItemAt(index).Value.Original) +
                   FoldedHash(entry.ItemAt(index).Value.Localized);
    }
}

void ShowAll(Workbench& w) {
    w.Search({});
}
void Undo(Workbench& w) {
    w.Choose("EditUndo");
}
void Redo(Workbench& w) {
    w.Choose("EditRedo");
}
void Flip(Workbench& w) {
    w.Choose("LocalizationOnlyShowNonlocalizedStrings");
}
void SelectMiddle(Workbench& w) {
    ShowAll(w);
    w.SelectMiddle();
}
void TypeInMiddle(Workbench& w) {
    SelectMiddle(w);
    w.Type();
}
/// With one undo afterwards, the depth that was saved last is never met again: there is always something to
/// save.
void TypeTwice(Workbench& w) {
    TypeInMiddle(w);
    w.Type();
}
// What is to be independent of the size is measured the second time in a row: preparing it has emptied the
// caches, the more so the more strings there are.
void Next(Workbench& w) {
    w.Choose("LocalizationNextItem");
}
void NextToMiddle(Workbench& w) {
    SelectMiddle(w);
    Next(w);
}
void SelectFirst(Workbench& w) {
    w.SelectMiddle();
    w.List().UserSelect(0);
}
void UndoBoth(Workbench& w) {
    Undo(w);
    Undo(w);
}
void ScrollOnePage(Workbench& w) {
    const int64_t top = w.List().ScrollPosition() + Page;
    w.List().UserScroll(top);
    BlindGraphics g;
    for (int64_t row = top; row < top + Page; ++row)
        w.List().PaintCell(g, row, 0, 0);
}
void ScrollToMiddle(Workbench& w) {
    w.List().UserScroll(w.List().ListCount() / 2);
    ScrollOnePage(w);
}
void ExpandMiddle(Workbench& w) {
    w.List().UserExpand(w.List().ListCount() / 2, true);
}
void Collapse(Workbench& w) {
    w.List().UserExpand(w.List().ListIndex(), false);
}

/// An import that was undone is freed by the next change, which is not to be the one that is measured.
void ForgetUndone(Workbench& w) {
    TypeInMiddle(w);
    Undo(w);
}

template <const StringView& Ending>
void Import(Workbench& w) {
    w.Import(Ending);
}
template <const StringView& Ending>
void ImportAndUndo(Workbench& w) {
    w.Import(Ending);
    Undo(w);
}

// One line each.
// clang-format off
const Operation All[] = {
    {"visit-entries", nullptr, VisitEntries, nullptr},
    {"read-entries", nullptr, ReadEntries, nullptr},
    {"rebuild", nullptr, [](Workbench& w) { w.Window().ShowAllStrings(); }, nullptr},
    {"search-some", [](Workbench& w) { w.Search("fi"); }, [](Workbench& w) { w.Search("fil"); }, ShowAll},
    {"search-none", [](Workbench& w) { w.Search("zq"); }, [](Workbench& w) { w.Search("zqx"); }, ShowAll},
    {"flip", nullptr, Flip, Flip},
    {"version", nullptr, [](Workbench& w) { w.Window().HistoryFilter.UserChoose(1); },
     [](Workbench& w) { w.Window().HistoryFilter.UserChoose(0); }},
    {"type", TypeInMiddle, [](Workbench& w) { w.Type(); }, UndoBoth},
    {"undo", TypeInMiddle, Undo, nullptr},
    {"save", TypeTwice, [](Workbench& w) { w.Choose("FileSave"); }, Undo},
    {"select", SelectFirst, [](Workbench& w) { w.SelectMiddle(); }, nullptr},
    {"next", NextToMiddle, Next, nullptr},
    {"expand", SelectMiddle, ExpandMiddle, Collapse},
    {"scroll", ScrollToMiddle, ScrollOnePage, nullptr},
    {"import", ForgetUndone, Import<Locale>, Undo},
    {"import-undo", Import<Locale>, Undo, nullptr},
    {"import-redo", ImportAndUndo<Locale>, Redo, Undo},
    {"delimited", ForgetUndone, Import<Delimited>, Undo},
    {"delimited-undo", Import<Delimited>, Undo, nullptr},
    {"delimited-redo", ImportAndUndo<Delimited>, Redo, Undo},
};
// clang-format on

double CpuSeconds() {
    timespec t;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

}  // namespace

std::span<const Operation> Operations() {
    return All;
}

double Measure(const Operation& operation, Workbench& workbench) {
    if (operation.Prepare) operation.Prepare(workbench);
    const double start = CpuSeconds();
    operation.Run(workbench);
    const double spent = CpuSeconds() - start;
    if (operation.Restore) operation.Restore(workbench);
    return spent;
}

}  // namespace sorbel::bench
