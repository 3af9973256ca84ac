#include "Steps.h"

namespace sorbel::fuzz {

namespace {

// Few, so that steps meet: the same texts again, and identifiers that differ in letter case only.
constexpr StringView Identifiers[] = {"a", "A", "b", "kFile", "KFILE", "\xC3\x84", "\xC3\xA4", ""};
constexpr StringView Texts[] = {"", "file", "File", "a", "OK", "\xC3\xB6l", "two words", "x\ny"};
constexpr StringView Languages[] = {"de", "DE", "fr", ""};
constexpr int64_t Platforms[] = {PlatformAny, PlatformMacOS, PlatformWindows, PlatformLinux, 7, -1};

}  // namespace

String Steps::Bytes() {
    const size_t count = Below(32);
    const StringView taken = mRest.substr(0, count);
    mRest.remove_prefix(taken.size());
    return String(taken);
}

String Steps::Text() {
    const size_t choice = Below(2 * std::size(Texts));
    return choice < std::size(Texts) ? String(Texts[choice]) : Bytes();
}

String Steps::Identifier() {
    const size_t choice = Below(std::size(Identifiers) + 2);
    return choice < std::size(Identifiers) ? String(Identifiers[choice]) : Bytes();
}

std::shared_ptr<LocalizedStringSet> Steps::Document() {
    auto set = std::make_shared<LocalizedStringSet>();
    set->Language = Pick(Languages);
    for (size_t count = Below(12); count > 0; --count) {
        const int64_t platform = Pick(Platforms);
        const String identifier = Identifier(), original = Text();
        set->AddEntry(platform, identifier, original, Text());
        if (Below(6) != 5) continue;
        set->History.push_back(set->Clone());
        set->History.back()->DateGenerated->SetYear(static_cast<int>(2000 + Below(4)));
    }
    return set;
}

}  // namespace sorbel::fuzz
