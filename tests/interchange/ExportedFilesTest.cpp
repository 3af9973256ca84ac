#include <gtest/gtest.h>

#include "interchange/FrameworkStrings.h"
#include "interchange/MoFile.h"
#include "interchange/StringFile.h"
#include "interchange/ValueChoice.h"
#include "platform/FileContents.h"
#include "platform/SpecialFolder.h"
#include "support/TemporaryFolder.h"

namespace sorbel {
namespace {

using namespace std::string_literals;

TEST(ValueChoice, FallsBackOnAnyAlone) {
    LocalizedStringSet set;
    set.AddEntry(PlatformAny, "k", "", "any");
    EXPECT_EQ(ExportedValue(*set.Entries.Find("k"), PlatformMacOS), "any");
    set.AddEntry(PlatformMacOS, "k", "", "");
    EXPECT_EQ(ExportedValue(*set.Entries.Find("k"), PlatformMacOS), "any");
    set.AddEntry(PlatformMacOS, "k", "", " ");
    EXPECT_EQ(ExportedValue(*set.Entries.Find("k"), PlatformMacOS), " ");
    EXPECT_EQ(ExportedValue(*set.Entries.Find("k"), PlatformWindows), "any");
    set.AddEntry(PlatformLinux, "l", "default", "linux");
    EXPECT_EQ(ExportedValue(*set.Entries.Find("l"), PlatformMacOS), "");
    EXPECT_EQ(ExportedValue(*set.Entries.Find("l"), PlatformWindows), "");
}

TEST(MoFile, IsLaidOutByteForByte) {
    LocalizedStringSet set;
    set.AddEntry(PlatformLinux, "left out", "", "l");
    EXPECT_EQ(ToMoFile(set), "\xDE\x12\x04\x95\0\0\0\0\0\0\0\0\x1C\0\0\0\x1C\0\0\0\0\0\0\0\0\0\0\0"s);
    set.AddEntry(PlatformAny, "bb", "default", "yy");
    set.AddEntry(PlatformAny, "a", "default", "x");
    EXPECT_EQ(ToMoFile(set),
              "\xDE\x12\x04\x95\0\0\0\0\2\0\0\0\x1C\0\0\0\x2C\0\0\0\0\0\0\0\0\0\0\0"
              "\1\0\0\0\x3C\0\0\0\2\0\0\0\x3E\0\0\0"
              "\1\0\0\0\x41\0\0\0\2\0\0\0\x43\0\0\0"
              "a\0bb\0x\0yy\0"s);
}

TEST(MoFile, SortsByBytesAndWritesCrLf) {
    LocalizedStringSet set;
    for (const char* identifier : {"𝄞", "\uFFFD", "ä", "b", "a\n", "a", "C", "\xFF", "Z"})
        set.AddEntry(PlatformWindows, identifier, "", identifier);
    set.AddEntry(PlatformAny, "a", "", "any");
    set.AddEntry(PlatformAny, "a b", "", "ü\r1\n2\r\n3\n\r\"\\");
    const String mo = ToMoFile(set);
    EXPECT_EQ(mo.substr(28 + 16 * 10),
              "C\0Z\0a\0a\n\0a b\0b\0ä\0\uFFFD\0𝄞\0\xFF\0"
              "C\0Z\0a\0a\r\n\0ü\r\n1\r\n2\r\n3\r\n\r\n\"\\\0b\0ä\0\uFFFD\0𝄞\0\xFF\0"s);
    EXPECT_EQ(mo.substr(28 + 8 * 14, 1), "\x11") << "the length counts bytes, both of each line end";
}

TEST(StringFile, HoldsEscapedValuesAndRawIdentifiers) {
    LocalizedStringSet set;
    EXPECT_EQ(ToStringFile(set), "\xFE\xFF");
    set.AddEntry(PlatformWindows, "left out", "", "w");
    set.AddEntry(PlatformAny, "z", "", "any");
    set.AddEntry(PlatformMacOS, "z", "", "\r\n\r\n\ta\"\\");
    EXPECT_EQ(ToStringFile(set), "\xFE\xFF" + EncodeUtf16BE("\"z\" = \"\\n\\n\\ta\\\"\\\\\";\n"));
    set.AddEntry(PlatformAny, "\"q\"\t\n", "", "𝄞ü");
    const String file = ToStringFile(set);
    EXPECT_EQ(file.substr(file.size() - 34),
              "\0\"\0\"\0q\0\"\0\t\0\n\0\"\0 \0=\0 \0\"\xD8\x34\xDD\x1E\0\xFC\0\"\0;\0\n"s);
}

TEST(FrameworkStrings, AreReadOnceByTheirKey) {
    const TemporaryFolder folder;
    const auto put = [&](const String& name, const String& bytes) {
        WriteContents(FolderItem(folder / name), bytes);
    };
    EXPECT_EQ(LocalizedMacFrameworkStrings("it"), "") << "no data folder";
    SpecialFolder::SetResources(folder.Path());
    const String odd("\xFE\xFF\0\xFF\r\n\xC3", 7);
    for (const char* name : {"it", "fr", "pt", "fa", "zh-TW", "pt-BR"})
        put(name + ".strings"s, odd + name);
    EXPECT_EQ(LocalizedMacFrameworkStrings("it"), "") << "a failed attempt is not repeated";
    EXPECT_EQ(LocalizedMacFrameworkStrings("FR"), odd + "fr");
    put("fr.strings", "changed");
    EXPECT_EQ(LocalizedMacFrameworkStrings("fr"), odd + "fr");
    EXPECT_EQ(LocalizedMacFrameworkStrings("zh_TW"), odd + "zh-TW");
    EXPECT_EQ(LocalizedMacFrameworkStrings("pt_BR"), odd + "pt-BR");
    for (const char* language : {"pt", "fa", "", "pt-BR", "fr_FR", "fr.strings"})
        EXPECT_EQ(LocalizedMacFrameworkStrings(language), "") << language;
    EXPECT_EQ(LocalizedMacFrameworkStrings("pt_PT"), "") << "its file is missing";
    put("pt-PT.strings", "late");
    EXPECT_EQ(LocalizedMacFrameworkStrings("pt_PT"), "");
}

}  // namespace
}  // namespace sorbel
