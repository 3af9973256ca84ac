#include "platform/Text.h"

#include <gtest/gtest.h>

namespace sorbel {
namespace {

using Fields = std::vector<String>;

TEST(Text, CharactersAreCodePointsAndStrayBytes) {
    EXPECT_EQ(Len(""), 0);
    EXPECT_EQ(Len("twelve bytes\u00e4\u20ac\U0001F600"), 15);
    // Overlong, surrogate, above the last code point, cut off: each byte is a character.
    EXPECT_EQ(Len("\xc0\xaf"), 2);
    EXPECT_EQ(Len("\xe0\x80\x80"), 3);
    EXPECT_EQ(Len("\xed\xa0\x80"), 3);
    EXPECT_EQ(Len("\xf4\x90\x80\x80"), 4);
    EXPECT_EQ(Len("\xe2\x82"), 2);
    EXPECT_EQ(Len("\xe2\x82x\x80"), 4);
    EXPECT_EQ(FirstCharacter("\u20acx").CodePoint, 0x20AC);
    EXPECT_EQ(FirstCharacter("\U0010FFFFx").Bytes.size(), 4);
    EXPECT_EQ(FirstCharacter("\xe2\x82").CodePoint, -1);
    EXPECT_EQ(FirstCharacter("\xe2\x82").Bytes, "\xe2");
}

TEST(Text, CutsAtCharacters) {
    const String text = "a\u00e4\xff\U0001F600z";
    EXPECT_EQ(Left(text, 3), "a\u00e4\xff");
    EXPECT_EQ(Right(text, 2), "\U0001F600z");
    EXPECT_EQ(Mid(text, 2, 2), "\u00e4\xff");
    EXPECT_EQ(Mid(text, 4), "\U0001F600z");
    EXPECT_EQ(Mid("0123456789abcdefgh", 9, 9), "89abcdefg");
    EXPECT_EQ(Mid(text, -7, 1), "a");
    for (const String& none :
         {Left(text, -1), Right(text, INT64_MIN), Mid(text, 6), Mid(text, 1, -1), Mid(text, INT64_MAX)})
        EXPECT_EQ(none, "");
    for (const String& all :
         {Left(text, 99), Right(text, INT64_MAX), Mid(text, 1, INT64_MAX), Mid(text, INT64_MIN)})
        EXPECT_EQ(all, text);
}

TEST(Text, TrimsUnicodeSpace) {
    EXPECT_EQ(Trim("\t\r\n a b \u00a0\u2003\u3000\u0085"), "a b");
    EXPECT_EQ(Trim("\u2028\u205f\u1680"), "");
    EXPECT_EQ(Trim("\u200bx\xa0"), "\u200bx\xa0") << "neither a zero-width space nor a stray byte is a space";
}

TEST(Text, SplitsByBytes) {
    EXPECT_EQ(Split("", ","), Fields({""}));
    EXPECT_EQ(Split(",a,,b,", ","), Fields({"", "a", "", "b", ""}));
    EXPECT_EQ(Split("aXbxc", "x"), Fields({"aXb", "c"}));
    EXPECT_EQ(Split("a---b", "--"), Fields({"a", "-b"}));
    EXPECT_EQ(Split("abc", ""), Fields({"abc"}));
    EXPECT_EQ(Split({}, {}), Fields({""}));
    EXPECT_EQ(Join({"a", "", "b"}, ", "), "a, , b");
    EXPECT_EQ(Join({}, ","), "");
    EXPECT_EQ(CountFields("a.b.c", "."), 3);
    EXPECT_EQ(NthField("a.b.c", ".", 2), "b");
    for (const int64_t beyond : {INT64_MIN, int64_t{-1}, int64_t{0}, int64_t{4}})
        EXPECT_EQ(NthField("a.b.c", ".", beyond), "");
}

TEST(Text, Replaces) {
    EXPECT_EQ(ReplaceAll("aaaa", "aa", "a"), "aa");
    EXPECT_EQ(ReplaceAll("%1 and %1", "%1", ""), " and ");
    EXPECT_EQ(ReplaceAll("aA", "", "x"), "aA");
    EXPECT_EQ(ReplaceLineEndings("a\r\nb\rc\nd\n\r\r\n", "\r\n"), "a\r\nb\r\nc\r\nd\r\n\r\n\r\n");
    EXPECT_EQ(ReplaceLineEndings("\n", ""), "");
    String appended = "a\r";
    for (size_t letters = 0; letters < 18; ++letters)  // an end at each place in a word
        ReplaceLineEndings(String(letters, '\x0B') + "\n" + String(letters, '\x8D'), "/", appended);
    EXPECT_EQ(CountFields(appended, "/"), 19);
    EXPECT_EQ(NthField(appended, "/", 18), String(16, '\x8D') + String(17, '\x0B'));
}

TEST(Text, Encodes) {
    EXPECT_EQ(Chr(9), "\t");
    EXPECT_EQ(Chr(0x20AC) + Chr(0x1F600) + Chr(0xE4), "\u20ac\U0001F600\u00e4");
    for (const int32_t none : {-1, 0xD800, 0xDFFF, 0x110000})
        EXPECT_EQ(Chr(none), "\uFFFD");
    EXPECT_EQ(ChrB(254), "\xfe");
    const char expected[] = "\0A\x20\xac\xd8\x3d\xde\x00\xff\xfd\xff\xfd\0b";
    EXPECT_EQ(EncodeUtf16BE("A\u20ac\U0001F600\xe2\x82"
                            "b"),
              String(expected, sizeof expected - 1));
    String units = "x";
    EncodeUtf16BE("12345678\u00fc1234567\U0001F60012345678", units);
    EXPECT_EQ(ReplaceAll(units, StringView("\0", 1), ""),
              "x12345678\xfc"
              "1234567\xd8\x3d\xde"
              "12345678");
    EXPECT_EQ(units.size(), 1 + 2 * 26u);
}

}  // namespace
}  // namespace sorbel
