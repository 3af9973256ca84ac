#include "Documents.h"

#include <cstdlib>
#include <filesystem>
#include <random>

#include "interchange/DelimitedText.h"
#include "platform/FileContents.h"

namespace sorbel::bench {

namespace {

constexpr StringView English[] = {"the",   "file", "could", "not",    "be",     "opened", "folder",
                                  "print", "page", "order", "amount", "window", "row",    "again"};
constexpr StringView German[] = {"die",     "Datei", "konnte",  "nicht",  "werden", "geöffnet", "Ordner",
                                 "drucken", "Seite", "Auftrag", "Betrag", "Größe",  "Zeile",    "wieder"};

template <size_t N>
String Phrase(std::mt19937& random, const StringView (&words)[N], size_t count) {
    String phrase;
    for (; count > 0; --count)
        (phrase += phrase.empty() ? "" : " ") += words[random() % N];
    return phrase;
}

std::shared_ptr<LocalizedStringSet> WithOtherTranslations(const LocalizedStringSet& document) {
    auto other = document.Clone();
    for (const auto& [identifier, entry] : document.Entries)
        other->AddEntry(PlatformAny, identifier, entry.Find(PlatformAny)->Original,
                        String(entry.Find(PlatformAny)->Localized) + " neu");
    return other;
}

}  // namespace

std::shared_ptr<LocalizedStringSet> MakeDocument(int64_t count) {
    auto document = std::make_shared<LocalizedStringSet>();
    document->Language = "de";
    std::mt19937 random(4711);
    for (int64_t number = 0; number < count; ++number) {
        const size_t words = 1 + random() % 9;
        const String original = Phrase(random, English, words);
        const String translation = Phrase(random, German, random() % 5 ? words : 0);
        document->AddEntry(PlatformAny, "kMainOpenCaption" + std::to_string(number), original, translation);
    }
    return document;
}

void AddVersion(LocalizedStringSet& document) {
    auto version = document.Clone();
    int64_t number = 0;
    for (const auto& [identifier, entry] : document.Entries)
        if (number++ % 20 == 0) version->AddEntry(PlatformAny, identifier, "then", {});
    document.History.push_back(std::move(version));
}

BenchFiles::BenchFiles(int64_t count) {
    mFolder = (std::filesystem::temp_directory_path() / "sorbel-bench-XXXXXX").native();
    if (!mkdtemp(mFolder.data())) std::abort();
    const auto document = MakeDocument(count);
    const auto other = WithOtherTranslations(*document);
    other->WriteFile(FolderItem(Base() + ".import.kestrum_locale"));
    WriteContents(FolderItem(Base() + ".import.txt"), ToDelimitedText(*other));
    AddVersion(*document);
    document->WriteFile(FolderItem(Base() + ".versions.kestrum_locale"));
}

BenchFiles::~BenchFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(mFolder, ignored);
}

}  // namespace sorbel::bench
