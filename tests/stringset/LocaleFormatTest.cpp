#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "LocaleBytes.h"
#include "stringset/LocaleFormat.h"
#include "stringset/LocaleWriter.h"

namespace sorbel::testing {

namespace {

const String Head = Magic + Long("vers", 0) + Text("date", "2001-02-03 04:05:06") + Text("nvvs", "");

String Contents(const String& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

// Every byte as the format lays it down, so nothing here is built by the helpers of the other tests.
TEST(LocaleFormat, KnownFileBothWays) {
    const StringView hex =
        "6E766C6F63616C65 766572730000000C6C6F6E670000000400000000 646174650000001B7374726E00000013"
        "323030312D30322D30332030343A30353A3036 6E767673000000087374726E00000000"
        "6C616E670000000A7374726E000000026465 656E74790000004B 69646E740000000A7374726E000000024F4B"
        "6F76616C0000000A7374726E000000024F4B 7476616C0000000B7374726E00000003477574"
        "706C61740000000C6C6F6E670000000400000000";
    String file, digits;
    for (const char c : hex) {
        if (c != ' ') digits += c;
        if (digits.size() < 2) continue;
        file += static_cast<char>(std::stoi(digits, nullptr, 16));
        digits.clear();
    }
    ASSERT_EQ(file.size(), 180u);

    LocalizedStringSet set;
    set.DateGenerated->SetSQLDateTime("2001-02-03 04:05:06");
    set.Language = "de";
    set.AddEntry(PlatformAny, "OK", "OK", "Gut");
    EXPECT_EQ(set.ToBytes(), file);

    const auto [read, valid] = Read(file);
    ASSERT_TRUE(valid);
    EXPECT_EQ(read->Language, "de");
    EXPECT_EQ(read->DateGenerated->SQLDateTime(), "2001-02-03 04:05:06");
    EXPECT_EQ(Values(*read, "ok"), "OK|Gut");
    EXPECT_EQ(read->ToBytes(), file);

    EXPECT_TRUE(set.FileBytes().empty());
    EXPECT_EQ(read->FileBytes(), std::vector<StringView>{file});
    const char* const text = read->Entries.Find("OK")->ItemAt(0).Value.Localized.View().data();
    EXPECT_EQ(text - read->FileBytes().front().data(), static_cast<ptrdiff_t>(file.find("Gut")));
    EXPECT_EQ(read->Clone()->FileBytes().front().data(), read->FileBytes().front().data());
}

TEST(LocaleFormat, FilesAreReadMergedAndWritten) {
    const String path = ::testing::TempDir() + "sorbel_format_test.kestrum_locale";
    const FolderItem f(path);
    LocalizedStringSet empty;
    empty.DateGenerated->SetSQLDateTime("2001-02-03 04:05:06");
    std::ofstream(path) << String(1000, 'x');
    empty.WriteFile(f);
    EXPECT_EQ(Contents(path), Head + Text("lang", "")) << "and nothing is left of the longer file";

    LocalizedStringSet set;
    EXPECT_TRUE(set.ReadFile(f));
    set.AddEntry(0, "a", "one\tx\r\n\"", "zwei");
    set.AddEntry(0, "b", "B", "");
    set.WriteFile(f);
    LocalizedStringSet merged;
    merged.AddEntry(0, "A", "old", "old");
    merged.AddEntry(1, "a", "kept", "kept");
    EXPECT_TRUE(merged.ReadFile(f));
    EXPECT_TRUE(merged.ReadFile(f));
    EXPECT_EQ(merged.Entries.Count(), 2);
    EXPECT_EQ(Values(merged, "a") + Values(merged, "a", 1), "one\tx\r\n\"|zweikept|kept");

    std::filesystem::remove(path);
    EXPECT_FALSE(set.ReadFile(f));
    EXPECT_NO_THROW(set.WriteFile(FolderItem(path + "/no/such/folder")));
}

TEST(LocaleFormat, TheLastOfTwoEntriesIsSaved) {
    const auto [set, valid] =
        Read(Magic + Entry("a", "A", "1", 0, Long("chng", 1)) + Entry("A", "B", "", 0, Long("chng", 0)) +
             Entry("c", "C", "3", -9) + Chunk("enty", ""));
    ASSERT_TRUE(valid);
    EXPECT_EQ(Values(*set, "a"), "B|");
    EXPECT_EQ(Values(*set, ""), "|") << "an entry without an identifier is not refused";

    set->AddEntry(0, "a", "B", "edited");
    const String saved = set->ToBytes();
    EXPECT_EQ(saved.substr(saved.find("enty")),
              Entry("a", "B", "edited") + Entry("c", "C", "3", -9) + Entry("", "", ""));
}

TEST(LocaleFormat, EntriesAreAllThereHoweverTheReadingEnds) {
    String entries;
    for (int i = 0; i < 30; ++i)
        entries += Entry("i" + std::to_string(i % 20), "", std::to_string(i));
    for (const String& end :
         {String(), Text("date", "yesterday"), Data("hist", Magic + Entry("x", "", "")), Int(1)}) {
        LocalizedStringSet set;
        try {
            set.ReadBytes(Buffer(Magic + entries + end));
        } catch (const UnsupportedFormatException&) {
        }
        ASSERT_EQ(set.Entries.Count(), 20);
        EXPECT_EQ(Values(set, "i3") + Values(set, "i9") + Values(set, "i15"), "|23|29|15");
    }
}

TEST(LocaleFormat, ChunksInAnyOrderAndValuesOfAnyType) {
    const auto [set, valid] = Read(
        Magic + Data("hist", Magic + Text("lang", "first")) + Data("lang", "fr") + Long("nvvs", -12) +
        Text("vers", " 7th") + Text("hist", Magic + Text("lang", "second")) +
        Chunk("enty",
              Long("plat", 2) + Long("tval", 5) + Data("idnt", "i") + Text("oval", "o") + Text("chng", "1")) +
        Chunk("enty", Text("plat", "99999999999") + Text("idnt", "big")) + Chunk("enty", Text("plat", "-x")));
    ASSERT_TRUE(valid);
    EXPECT_EQ(set->Language + set->NorvaneVersion, "fr-12");
    EXPECT_EQ(set->FileVersion, 7);
    EXPECT_EQ(Values(*set, "i", PlatformWindows), "o|5");
    EXPECT_EQ(Values(*set, "big", INT32_MAX), "|");
    EXPECT_EQ(Values(*set, "", 0), "|");
    ASSERT_EQ(set->History.size(), 2u);
    EXPECT_EQ(set->History[0]->Language + set->History[1]->Language, "firstsecond");
    EXPECT_NE(set->ToBytes().find(Long("vers", 0)), String::npos) << "another version number is not written";
}

TEST(LocaleFormat, OddChunksMakeTheFileInvalidButAreReadOver) {
    const String entry = Entry("a", "A", "1");
    const String odd[] = {
        Chunk("what", "four"), Chunk("lang", Chunk("huge", "x")),
        Chunk("vers", "long" + Int(6) + Int(9) + "xx"),
        Chunk("vers", "long" + Int(0)),  // its value is the tag behind it, which is read again
        Entry("b", "B", "2", 0, Chunk("more", "unknown"))};
    for (const String& chunk : odd) {
        const auto [set, valid] = Read(Magic + chunk + entry);
        EXPECT_FALSE(valid) << chunk;
        EXPECT_EQ(Values(*set, "a"), "A|1") << chunk;
    }
    EXPECT_EQ(Read(Magic + odd[2]).Set->FileVersion, 9);
    EXPECT_EQ(Values(*Read(Magic + odd[4]).Set, "b"), "B|2");
    LocalizedStringSet set;
    EXPECT_FALSE(set.ReadBytes(Buffer(Magic + odd[0])));
    EXPECT_TRUE(set.ReadBytes(Buffer(Magic))) << "each file is judged by itself";
    EXPECT_FALSE(set.ReadBytes(Buffer("NVLOCALE")));
    EXPECT_FALSE(set.ReadBytes(Buffer("")));
}

TEST(LocaleFormat, EntriesEndWhereTheirLengthSays) {
    const String field = Text("idnt", "a") + Text("oval", "A");
    const String overrun = "enty" + Int(LenB(field) - 1) + field.substr(0, field.size() - 1);
    const auto [set, valid] = Read(Magic + overrun + Text("lang", "de"));  // the value takes the "l" in
    EXPECT_TRUE(valid);
    EXPECT_EQ(set->Language, "de");
    EXPECT_EQ(Values(*set, "a"), "l|");
}

TEST(LocaleFormat, ApplicationBytesSurvive) {
    const String head = Head + Text("lang", "");
    for (const String& bytes : {String("/opt/./a//b.exe"), String("\0alias\xFF", 7), String()}) {
        const String file = head + Data("appl", bytes) + Entry("a", "A", "1");
        const auto set = Read(file).Set;
        EXPECT_EQ(set->EditedApplication != nullptr, bytes.starts_with("/"));
        EXPECT_EQ(set->ToBytes(), file);
        set->EditedApplication = std::make_shared<FolderItem>("/opt/new.exe");
        EXPECT_EQ(set->ToBytes(), head + Data("appl", "/opt/new.exe") + Entry("a", "A", "1"));
    }
}

TEST(LocaleFormat, BadHistoryIsDroppedAndABadDateIsNot) {
    const auto [set, valid] =
        Read(Magic + Data("hist", "nothing") + Data("hist", Magic + Chunk("what", "")) +
             Data("hist", Magic + "lang") + Long("hist", 1) +
             Data("hist", Magic + Data("hist", Magic + "x") + Text("lang", "good")) + Entry("a", "A", "1"));
    EXPECT_TRUE(valid);
    ASSERT_EQ(set->History.size(), 1u);
    EXPECT_EQ(set->History[0]->Language, "good");
    EXPECT_EQ(Values(*set, "a"), "A|1");

    LocalizedStringSet dated;
    const String bad = Magic + Entry("a", "A", "1") + Data("hist", Magic + Text("date", "yesterday"));
    EXPECT_THROW(dated.ReadBytes(Buffer(bad)), UnsupportedFormatException);
    EXPECT_EQ(Values(dated, "a"), "A|1");
}

TEST(LocaleFormat, TaggedValuesTellTheirSize) {
    String out;
    EXPECT_EQ(WriteTaggedInteger(out, LocaleFormat::PlatformTag, 0x1'8000'0001), 20);
    EXPECT_EQ(WriteTaggedBoolean(out, LocaleFormat::ChangedTag, true), 20);
    EXPECT_EQ(WriteTaggedString(out, LocaleFormat::LanguageTag, "ä"), 18);
    EXPECT_EQ(WriteTaggedString(out, LocaleFormat::LanguageTag, ""), 16);
    EXPECT_EQ(WriteTaggedData(out, LocaleFormat::ApplicationTag, StringView("\0\xFF", 2)), 18);
    EXPECT_EQ(out, Long("plat", 0x80000001) + Long("chng", 1) + Text("lang", "ä") + Text("lang", "") +
                       Data("appl", String("\0\xFF", 2)));
}

// The sample was written by another program.
TEST(LocaleFormat, SampleIsSavedAsItWas) {
    for (const char* name : {"Notizbuch.kestrum_locale", "Notizbuch newer.kestrum_locale"}) {
        const String path = String(SORBEL_SAMPLES) + "/" + name;
        LocalizedStringSet set;
        ASSERT_TRUE(set.ReadFile(FolderItem(path)));
        EXPECT_GT(set.Entries.Count(), 100);
        EXPECT_EQ(set.ToBytes(), Contents(path));
    }
}

}  // namespace sorbel::testing
