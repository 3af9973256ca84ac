#include <libxml/xmlwriter.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "exchange/RowKey.h"
#include "exchange/Xliff.h"

namespace sorbel {

namespace {

constexpr const char* Namespace = "urn:oasis:names:tc:xliff:document:1.2";

/// The library's writer, which has no memory left when one of its calls fails: what takes its bytes does not
/// fail while it is writing.
class XmlWriter {
  public:
    explicit XmlWriter(Output& output) {
        xmlOutputBufferPtr buffer = xmlOutputBufferCreateIO(Append, nullptr, &output, nullptr);
        mWriter.reset(buffer ? xmlNewTextWriter(buffer) : nullptr);
        if (!mWriter) throw std::bad_alloc();
    }

    void StartDocument() { Check(xmlTextWriterStartDocument(mWriter.get(), "1.0", "UTF-8", nullptr)); }
    void EndDocument() { Check(xmlTextWriterEndDocument(mWriter.get())); }
    void StartElement(const char* name) { Check(xmlTextWriterStartElement(mWriter.get(), Xml(name))); }
    void EndElement() { Check(xmlTextWriterEndElement(mWriter.get())); }
    void Attribute(const char* name, StringView value) {
        Check(xmlTextWriterWriteAttribute(mWriter.get(), Xml(name), Terminated(value)));
    }
    void Text(StringView text) { Check(xmlTextWriterWriteString(mWriter.get(), Terminated(text))); }
    void Element(const char* name, StringView text) {
        StartElement(name);
        Text(text);
        EndElement();
    }

  private:
    struct Free {
        void operator()(xmlTextWriterPtr writer) const { xmlFreeTextWriter(writer); }
    };

    static int Append(void* context, const char* bytes, int size) {
        static_cast<Output*>(context)->Append({bytes, static_cast<size_t>(size)});
        return size;
    }
    static const xmlChar* Xml(const char* text) { return reinterpret_cast<const xmlChar*>(text); }
    const xmlChar* Terminated(StringView text) {
        mTerminated = text;
        return Xml(mTerminated.c_str());
    }
    static void Check(int result) {
        if (result < 0) throw std::bad_alloc();
    }

    std::unique_ptr<xmlTextWriter, Free> mWriter;
    String mTerminated;
};

void WriteUnit(const Row& row, String& key, XmlWriter& xml) {
    const StringView translation = row.Value.Localized;
    RowKey(row.Identifier, row.Platform, key);
    xml.StartElement("trans-unit");
    xml.Attribute("id", key);
    xml.Attribute("resname", row.Identifier);
    xml.Attribute("xml:space", "preserve");
    xml.Element("source", row.Value.Original);
    xml.StartElement("target");
    xml.Attribute("state", translation.empty() ? "new" : "translated");
    if (!translation.empty()) xml.Text(translation);
    xml.EndElement();
    xml.Element("note", "Platform: " + PlatformWord(row.Platform));
    xml.EndElement();
    xml.Text("\n");
}

/// "de": up to eight letters; behind the first hyphen digits too.
bool IsSubtag(StringView part, bool isFirst) {
    const auto isGood = [isFirst](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9' && !isFirst);
    };
    return !part.empty() && part.size() <= 8 && std::ranges::all_of(part, isGood);
}

}  // namespace

String LanguageTag(StringView code) {
    const String tag = ReplaceAll(code, "_", "-");
    bool isFirst = true;
    for (const String& part : Split(tag, "-"))
        if (!IsSubtag(part, std::exchange(isFirst, false))) return {};
    return tag;
}

void WriteXliff(const Rows& rows, StringView original, StringView sourceLanguage, Output& output) {
    XmlWriter xml(output);
    xml.StartDocument();
    xml.StartElement("xliff");
    xml.Attribute("version", "1.2");
    xml.Attribute("xmlns", Namespace);
    xml.StartElement("file");
    xml.Attribute("original", original);
    xml.Attribute("source-language", sourceLanguage);
    const String target = LanguageTag(rows.Set().Language);
    if (!target.empty()) xml.Attribute("target-language", target);
    xml.Attribute("datatype", "plaintext");
    xml.StartElement("body");
    xml.Text("\n");
    String key;
    rows.ForEach([&](const Row& row) {
        WriteUnit(row, key, xml);
        output.FlushIfLarge();
    });
    xml.EndElement();
    xml.EndElement();
    xml.EndElement();
    xml.EndDocument();
}

}  // namespace sorbel
