#include <gtest/gtest.h>

#include "qt/Text.h"
#include "qt/TextSplice.h"

namespace sorbel {

TEST(Splice, KeepsTheBytesOutsideTheEdit) {
    struct Case {
        const char* Original;
        const char16_t* Edited;
        const char* Result;
    };
    const Case cases[] = {
        {"one\r\ntwo\rthree\nfour", u"one\ntwo\nthree!\nfour", "one\r\ntwo\rthree!\nfour"},
        {"a\rb", u"a\nb\nc", "a\rb\rc"},         // a new break is of the first kind
        {"a\r\nb", u"a\n\nb", "a\r\n\r\nb"},     //
        {"ab", u"a\nb", "a\nb"},                 //
        {"a\rX\nb", u"a\n\nb", "a\r\rb"},        // CR and LF meet and stay two breaks
        {"x\ry\nb", u"x\ny\n\nb", "x\ry\n\rb"},  //
        {"\xFF ok \xC3", u"\xDCFF okay \xDCC3", "\xFF okay \xC3"},
        {"\xC3(", u"\xDCC3", "\xC3"},  //
        {"a\xC2\xA0"
         "b",
         u"a\u00A0bc",
         "a\xC2\xA0"
         "bc"},                                                   // no-break space
        {"\xF0\x9F\x98\x80", u"\U0001F601", "\xF0\x9F\x98\x81"},  // differ in the low surrogate
        {"\xF0\x9F\x98\x80", u"\U00020600", "\xF0\xA0\x98\x80"},  // differ in the high surrogate
        {"", u"new", "new"},
        {"gone\r\n", u"", ""},
        {"aa", u"aaa", "aaa"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(SpliceEdit(c.Original, c.Edited), c.Result) << testing::PrintToString(c.Original);
}

TEST(Splice, AnyBytesComeBackFromTheirEditableForm) {
    String bytes;
    for (int byte = 0; byte < 256; ++byte)
        if (byte != '\r') bytes += static_cast<char>(byte);
    for (const String& text :
         {bytes, String("\xED\xA0\x80"), String("\xF0\x9F\x98\x80\x80"), String("\xEF\xBF\xBD")})
        EXPECT_EQ(FromQt(ToEditable(text)), text);
    EXPECT_EQ(FromQt(QString(QChar(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(ToQt("a\xFF"), QStringLiteral("a\uFFFD"));
}

}  // namespace sorbel
