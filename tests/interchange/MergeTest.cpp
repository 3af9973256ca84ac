#include "interchange/Merge.h"

#include <gtest/gtest.h>

#include "interchange/DelimitedText.h"

namespace sorbel {
namespace {

TEST(Merge, TheImportedValueAlwaysWins) {
    const auto document = std::make_shared<LocalizedStringSet>();
    document->Language = "de";
    document->AddEntry(PlatformAny, "erased", "E", "filled");
    document->AddEntry(PlatformAny, "new default", "old", "x");
    document->AddEntry(PlatformWindows, "new default", "old win", "x");
    document->AddEntry(PlatformAny, "kept", "K", "kept");
    document->AddEntry(PlatformAny, "any stays", "A", "any");
    document->History.push_back(document->Clone());
    const String before = ToDelimitedText(*document);

    LocalizedStringSet imported;
    imported.AddEntry(PlatformLinux, "ANY STAYS", "", "Tux");
    imported.AddEntry(PlatformMacOS, "any stays", "M", "Mac");
    imported.AddEntry(PlatformAny, "not in the document", "N", "n");
    imported.AddEntry(PlatformAny, "erased", "", "");
    imported.AddEntry(PlatformAny, "new default", "new", "x");
    imported.History.push_back(imported.Clone());

    const auto change = ChangesFromLocale(document, imported);
    EXPECT_EQ(change->Changes.size(), 4U) << "an equal value is a change as well";
    EXPECT_EQ(ToDelimitedText(*document), before) << "nothing is applied yet";
    change->Perform();
    EXPECT_EQ(ToDelimitedText(*document),
              "erased\tAny\tE\t\nnew default\tAny\tnew\tx\nnew default\tWindows\told win\tx\n"
              "kept\tAny\tK\tkept\nany stays\tAny\tA\tany\nany stays\tLinux\tA\tTux\n"
              "any stays\tMac OS\tM\tMac\n");
    ASSERT_EQ(document->History.size(), 2U) << "the imported file's own history stays out";
    EXPECT_EQ(ToDelimitedText(*document->History[1]), before);
    EXPECT_EQ(document->History[1]->Language, "de");
    EXPECT_TRUE(document->History[1]->History.empty());

    change->Undo();
    EXPECT_EQ(document->History.size(), 1U);
    EXPECT_EQ(ToDelimitedText(*document),
              "erased\tAny\tE\tfilled\nnew default\tAny\tnew\tx\nnew default\tWindows\told win\tx\n"
              "kept\tAny\tK\tkept\nany stays\tAny\tA\tany\nany stays\tLinux\tA\t\n"
              "any stays\tMac OS\tM\t\n");
}

TEST(Merge, KeepsNothingOfTheImportedFile) {
    LocalizedStringSet before, imported;
    before.AddEntry(PlatformAny, "a", "A", "old a");
    before.AddEntry(PlatformAny, "b", "B", "old b");
    imported.AddEntry(PlatformLinux, "B", "another default", "a translation of some length");
    imported.AddEntry(PlatformAny, "a", "", "neu");
    const auto reread = [](LocalizedStringSet& set) {
        auto file = std::make_shared<ByteBuffer>(set.ToBytes().size());
        set.ToBytes().copy(file->Data(), file->View().size());
        auto copy = std::make_shared<LocalizedStringSet>();
        EXPECT_TRUE(copy->ReadBytes(file));
        return copy;
    };
    const auto document = reread(before);
    const auto change = ChangesFromLocale(document, *reread(imported));
    for (int round = 0; round < 2; ++round) {
        change->Perform();
        EXPECT_EQ(ToDelimitedText(*document),
                  "a\tAny\tA\tneu\nb\tAny\tB\told b\n"
                  "b\tLinux\tanother default\ta translation of some length\n");
        change->Undo();
        EXPECT_EQ(ToDelimitedText(*document),
                  "a\tAny\tA\told a\nb\tAny\tB\told b\nb\tLinux\tanother default\t\n");
    }
}

TEST(Merge, WithoutAnyMatchTakesASnapshotAllTheSame) {
    const auto document = std::make_shared<LocalizedStringSet>();
    const auto change = ChangesFromLocale(document, LocalizedStringSet());
    EXPECT_TRUE(change->Changes.empty());
    change->Perform();
    EXPECT_EQ(document->History.size(), 1U);
}

}  // namespace
}  // namespace sorbel
