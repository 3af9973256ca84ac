#include "headless/JsonText.h"

#include <gtest/gtest.h>

#include "headless/Request.h"

using namespace sorbel;
using namespace sorbel::headless;

namespace {

/// The text that a JSON string stands for.
String Read(const String& json) {
    return ParseJson(json).get<String>();
}

}  // namespace

TEST(JsonText, WritesAnyBytes) {
    const std::pair<String, String> cases[] = {
        {"plain /", R"("plain /")"},
        {"\"\\", R"("\"\\")"},
        {"\t\n\x01", R"("\u0009\u000a\u0001")"},
        {String("\0", 1), R"("\u0000")"},
        {"Käse €\xF0\x9F\x98\x80", "\"Käse €\xF0\x9F\x98\x80\""},
        {"a\xFF"
         "b",
         R"("a\udcffb")"},
        {"\x80\xC3", R"("\udc80\udcc3")"},
        {"\xE2\x82", R"("\udce2\udc82")"},
        {"\xED\xA0\x80", R"("\udced\udca0\udc80")"},  // a surrogate is no character
        {"\xC0\xAF", R"("\udcc0\udcaf")"},            // nor is an overlong form
    };
    for (const auto& [bytes, json] : cases) {
        EXPECT_EQ(ToJson(bytes), json);
        EXPECT_EQ(Read(json), bytes);
    }
    EXPECT_EQ(ToJson({{"k\xFE", {1, true, nullptr, "\xFE"}}, {"a", Json::object()}}),
              R"({"k\udcfe":[1,true,null,"\udcfe"],"a":{}})");
}

TEST(JsonText, ReadsEscapes) {
    const std::pair<String, String> cases[] = {
        {R"("\uDCFF\udcfF")", "\xFF\xFF"},
        {R"("\ud83d\ude00")", "\xF0\x9F\x98\x80"},  // a pair is one character, also where its second
        {R"("\ud83d\udc80")", "\xF0\x9F\x92\x80"},  // half alone would be a byte
        {R"("\ud83d\udc80\udc80")", "\xF0\x9F\x92\x80\x80"},
        {R"("\\udc80")", "\\udc80"},
        {R"("\\\udc80")", "\\\x80"},
        {R"("\u00000041\u0041")", String("\0"
                                         "0041A",
                                         6)},
        {R"("\udcc3\udca4")", "ä"},
        {R"("\/\b\f\n\r\t\"")", "/\b\f\n\r\t\""},
    };
    for (const auto& [json, bytes] : cases)
        EXPECT_EQ(Read(json), bytes) << json;
    const Json nested = ParseJson(R"({"a\udc80":{"\u0000":["\udcfe",{"\\udc80":1}]}})");
    EXPECT_EQ(nested["a\x80"][String("\0", 1)][0], "\xFE");
    EXPECT_EQ(nested["a\x80"][String("\0", 1)][1]["\\udc80"], 1);
}

TEST(JsonText, RefusesWhatIsNoJson) {
    const String cases[] = {"",
                            " ",
                            "{",
                            "{}x",
                            "nul",
                            R"("\ud83d")",
                            R"("\udc7f")",
                            R"("\udd00")",
                            R"("\u12")",
                            R"("\)",
                            R"(\udc80)",
                            "\"\x80\"",
                            "\"a\nb\"",
                            String("\"\0"
                                   "41\"",
                                   5),
                            String(100'000, '[')};
    for (const String& json : cases)
        EXPECT_THROW((void)ParseJson(json), RequestError) << json.substr(0, 20);
}

TEST(Request, FieldsHaveKindsAndLimits) {
    const Request request(R"({"text":"a","none":null,"number":7,"large":18446744073709551615,"part":1.5,
                              "texts":["a","\udcff"],"mixed":["a",1],"flag":true})");
    EXPECT_EQ(request.Text("text"), "a");
    EXPECT_EQ(request.TextOrNull("none"), std::nullopt);
    EXPECT_EQ(request.Texts("texts"), (std::vector<String>{"a", "\xFF"}));
    EXPECT_EQ(request.Number("number", 7, 7), 7);
    EXPECT_EQ(request.Number("absent", 0, 9, 3), 3);
    EXPECT_EQ(request.Number("none", 0, 9, 3), 3);
    EXPECT_THROW((void)request.Text("absent"), RequestError);
    EXPECT_THROW((void)request.Text("none"), RequestError);
    EXPECT_THROW((void)request.TextOrNull("number"), RequestError);
    EXPECT_THROW((void)request.Texts("text"), RequestError);
    EXPECT_THROW((void)request.Texts("mixed"), RequestError);
    for (const char* field : {"absent", "none", "text", "part", "flag"})
        EXPECT_THROW((void)request.Number(field, 0, 9), RequestError) << field;
    EXPECT_THROW((void)request.Number("number", 0, 6), RequestError);
    EXPECT_THROW((void)request.Number("number", 8, 9), RequestError);
    EXPECT_THROW((void)request.Points("large"), RequestError);
    EXPECT_THROW(Request("[]"), RequestError);
}
