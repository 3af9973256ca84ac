// Any bytes as a file of tab-delimited text, read as a locale and imported into one; and backslash escapes.
//   LOCALE|import|TEXT
#include "PlainText.h"
#include "Target.h"
#include "TextFile.h"
#include "editing/undo/UndoManager.h"
#include "interchange/DelimitedText.h"
#include "interchange/Escapes.h"

namespace sorbel::fuzz {

namespace {

void CheckEscapes(StringView text) {
    const String escaped = EscapeCStyle(text);
    Require(DecodeCStyleEscapes(escaped) == text, "escapes are undone");
    Require(escaped.find_first_of("\t\r\n") == String::npos, "an escaped text stays within its field");
    Require(PlainUnescaped(escaped) == text, "escapes mean what they say");
    Require(DecodeCStyleEscapes(text) == PlainUnescaped(text), "any escapes are decoded byte by byte");
}

std::shared_ptr<LocalizedStringSet> CheckTextLocale(StringView text) {
    const FolderItem file = FileWith("locale.txt", text);
    PlainDocument expected;
    const bool complete = AddTextLocale(text, expected);
    auto set = std::make_shared<LocalizedStringSet>();
    bool failed = false, checkFailed = false;
    try {
        Require(!set->ReadFile(file), "text is never a document");
    } catch (const OutOfBoundsException&) {
        failed = true;
    }
    try {
        LocalizedStringSet::CheckTextFile(file);
    } catch (const OutOfBoundsException&) {
        checkFailed = true;
    }
    Require(failed != complete, "a short line, and nothing else, is a failure");
    Require(checkFailed == failed, "a check of the text fails where its read does");
    Require(PlainDocument(*set) == expected, "the rows before a short line are in the set");
    Require(set->Language.empty() && set->History.empty(), "text has entries only");
    return set;
}

void CheckImport(const std::shared_ptr<LocalizedStringSet>& set, StringView text) {
    PlainDocument document(*set);
    const auto expected = PlainImport(document, text);
    auto import = ChangesFromDelimitedText(set, FileWith("import.txt", text));
    Require((import != nullptr) == expected.has_value(), "the first line decides whether it is such text");
    Require(PlainDocument(*set) == document, "changes that are not applied change nothing");
    if (!import) return;
    Require(import->Changes.size() == expected->size(), "each row that fits is a change");

    UndoManager undo;
    undo.Add(std::move(import), true);
    for (const PlainChange& change : *expected)
        change.Perform(document);
    Require(PlainDocument(*set) == document, "the rows are the translations");
    const PlainDocument after = document;
    undo.Undo();
    for (const PlainChange& change : *expected)
        change.Undo(document);
    Require(PlainDocument(*set) == document, "undo brings the translations back");
    undo.Redo();
    Require(PlainDocument(*set) == after, "redo gives the first result");
    Require(set->History.empty(), "delimited text adds no version");
}

/// Whether a mark at the head belongs to the text is not asked here.
StringView WithoutMark(StringView text) {
    while (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    return text;
}

}  // namespace

void CheckInput(StringView input) {
    const Pair texts = SplitInput(input, "|import|");
    CheckEscapes(input);
    CheckImport(CheckTextLocale(WithoutMark(texts.First)), WithoutMark(texts.Second));
}

}  // namespace sorbel::fuzz
