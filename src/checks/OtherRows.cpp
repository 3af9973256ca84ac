#include "checks/OtherRows.h"

#include <functional>

#include "checks/Mnemonics.h"
#include "stringset/PlatformTable.h"

namespace sorbel::checks {

size_t InconsistencyFinder::Hash::operator()(const Row& row) const {
    return std::hash<StringView>()(row.Default) ^ std::hash<int64_t>()(row.Platform);
}

const Row* InconsistencyFinder::Add(const Row& row) {
    if (row.Default.empty() || row.Translation.empty()) return nullptr;
    const auto [first, isNew] = mFirst.insert(row);
    return isNew || first->Translation == row.Translation ? nullptr : &*first;
}

std::optional<Row> DuplicateMnemonicFinder::Add(const Row& row) {
    const Marked marked{row, FindMnemonics(row.Default).Letter, FindMnemonics(row.Translation).Letter};
    if (marked.InDefault < 0 || marked.InTranslation < 0) return {};
    if (!mOfString.empty() && mOfString.front().Text.Identifier != row.Identifier) EndString();
    mOfString.push_back(marked);

    if (row.Platform == PlatformAny) return FindAt({marked.InTranslation, {}}, marked);
    const std::optional<Row> any = FindAt({marked.InTranslation, PlatformAny}, marked);
    return any ? any : FindAt({marked.InTranslation, row.Platform}, marked);
}

void DuplicateMnemonicFinder::EndString() {
    for (const Marked& marked : mOfString) {
        Keep({marked.InTranslation, marked.Text.Platform}, marked);
        Keep({marked.InTranslation, {}}, marked);
    }
    mOfString.clear();
}

void DuplicateMnemonicFinder::Keep(const Place& place, const Marked& marked) {
    Pair& pair = mPairs[place];
    if (!pair.First)
        pair.First = marked;
    else if (!pair.Other && pair.First->InDefault != marked.InDefault)
        pair.Other = marked;
}

std::optional<Row> DuplicateMnemonicFinder::FindAt(const Place& place, const Marked& marked) const {
    const auto found = mPairs.find(place);
    if (found == mPairs.end()) return {};
    for (const std::optional<Marked>& one : {found->second.First, found->second.Other})
        if (one && one->InDefault != marked.InDefault) return one->Text;
    return {};
}

}  // namespace sorbel::checks
