#include <gtest/gtest.h>

#include "exchange/Documents.h"
#include "exchange/ExchangeError.h"

namespace sorbel {
namespace {

const String Head =
    "<?xml version='1.0'?>\n<xliff version='1.2' xmlns='urn:oasis:names:tc:xliff:document:1.2' "
    "xmlns:o='urn:other'><file original='x' source-language='en' datatype='plaintext'><body>\n";
const String Foot = "</body></file></xliff>";

Document Letters() {
    auto set = std::make_shared<LocalizedStringSet>();
    for (const StringView name : {"a", "b", "c", "d", "e", "f", "g"})
        set->AddEntry(PlatformAny, name, "s", "t");
    return set;
}

String Unit(StringView id, StringView rest) {
    return "<trans-unit id='" + String(id) + "'><source>s</source>" + String(rest) + "</trans-unit>\n";
}

TEST(Xliff, TakesTextsOutOfWhateverIsAroundThem) {
    const Document set = Letters();
    const String units =
        "<group><group>" + Unit("a", "<target>1 &lt;&#13;&amp;<![CDATA[<2>]]><!-- no --></target>") +
        "</group></group>" +
        Unit("b",
             "<alt-trans><source>no</source><target>no</target></alt-trans>"
             "<target>b <g id='1'>in <mrk mtype='seg'>mrk</mrk></g><ph id='2'>%1</ph></target>"
             "<alt-trans><target>no</target></alt-trans><note>no</note>") +
        Unit("c",
             "<seg-source><mrk mid='0' mtype='seg'>no</mrk></seg-source><target>c<x id='1' "
             "equiv-text='%2'/></target><o:target>no</o:target>") +
        Unit("d", "<target xml:lang='de' state='final'>  d\n </target>");
    EXPECT_EQ(ImportText(set, ReadXliff, Head + units + Foot).Report,
              "4 changed, 0 unchanged, 0 unknown, 0 skipped\n");
    EXPECT_EQ(Translation(set, "a"), "1 <\r&<2>");
    EXPECT_EQ(Translation(set, "b"), "b in mrk%1");
    EXPECT_EQ(Translation(set, "c"), "c%2");
    EXPECT_EQ(Translation(set, "d"), "  d\n ");
}

TEST(Xliff, PassesOverWhatIsNoTranslation) {
    const Document set = Letters();
    const String units = Unit("a", "<target state='new'>x</target>") +
                         Unit("b", "<target state='needs-translation'>x</target>") + Unit("c", "") +
                         Unit("d", "<target/>") + Unit("e", "<target>lost <x id='1'/></target>") +
                         Unit("z|Linux", "<target>x</target>") +
                         "<bin-unit id='f'><target>x</target></bin-unit>";
    const Imported imported = ImportText(set, ReadXliff, Head + units + Foot);
    EXPECT_EQ(imported.Report, "0 changed, 0 unchanged, 1 unknown, 5 skipped\n");
    EXPECT_EQ(imported.Remarks, "z|Linux: unknown\n");
}

TEST(Xliff, RefusesWhatItMustNotFollow) {
    const std::pair<String, StringView> texts[] = {
        {"<!DOCTYPE xliff [<!ENTITY e 'x'>]>\n" + Head + Unit("a", "<target>&e;</target>") + Foot,
         "declares"},
        {"<!DOCTYPE xliff [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><xliff version='1.2'/>", "declares"},
        {"<!DOCTYPE xliff [<!ENTITY % p SYSTEM 'http://127.0.0.1:1/x'>%p;]><xliff version='1.2'/>",
         "declares"},
        {"<!DOCTYPE xliff SYSTEM 'http://127.0.0.1:1/x.dtd'>\n<xliff version='1.2'>&e;</xliff>", "entity"},
        {"<xliff version='2.0'/>", "version"},
        {"<TS version='2.1'/>", "not an XLIFF"},
        {Head + "<trans-unit/>" + Foot, "without an id"},
        {Head, ""},
        {Head + Unit("a", "<target>\xFF</target>") + Foot, ""},
        {"", "mpty"}};
    for (const auto& [given, why] : texts) {
        const String text = given.starts_with("<!") && given.find("<?xml") != String::npos
                                ? ReplaceAll(given, "<?xml version='1.0'?>", "")
                                : given;
        try {
            ImportText(Letters(), ReadXliff, text);
            ADD_FAILURE() << "took " << text;
        } catch (const FormatError& error) {
            EXPECT_NE(error.Message().find(why), String::npos) << error.Message() << text;
            EXPECT_GE(error.Line(), text.empty() ? 0 : 1);
        }
    }
    String deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<group>";
    EXPECT_THROW(ImportText(Letters(), ReadXliff, Head + deep), FormatError);
    EXPECT_EQ(ImportText(Letters(), ReadXliff,
                         "<!DOCTYPE xliff PUBLIC '-//XLIFF//DTD XLIFF//EN' 'http://127.0.0.1:1/x.dtd'>\n"
                         "<xliff version='1.0'><file><body>" +
                             Unit("a", "<target>x</target>") + Foot)
                  .Report,
              "1 changed, 0 unchanged, 0 unknown, 0 skipped\n")
        << "of version 1.0, whose type is not fetched";
}

TEST(Xliff, WritesLanguagesAsTheSchemaWantsThem) {
    EXPECT_EQ(LanguageTag("pt_BR"), "pt-BR");
    EXPECT_EQ(LanguageTag("es_419"), "es-419");
    for (const StringView bad : {"", "de@latin", "123", "de_", "toolonglanguage"})
        EXPECT_EQ(LanguageTag(bad), "") << bad;
    const Document set = Letters();
    EXPECT_EQ(ToXliff(*set).find("target-language"), String::npos);
}

}  // namespace
}  // namespace sorbel
