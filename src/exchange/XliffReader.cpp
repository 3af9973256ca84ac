#include <libxml/xmlreader.h>

#include <exception>
#include <memory>
#include <new>

#include "exchange/ExchangeError.h"
#include "exchange/Xliff.h"

namespace sorbel {

namespace {

StringView View(const xmlChar* text) {
    return text ? StringView(reinterpret_cast<const char*>(text)) : StringView();
}

/// The library's streaming reader over an `Input`. Without XML_PARSE_HUGE it ends at texts of 10 MB and at
/// 256 elements one inside the other.
class XmlReader {
  public:
    explicit XmlReader(Input& input) : mInput(input) {
        mReader.reset(xmlReaderForIO(ReadInput, nullptr, this, nullptr, nullptr, XML_PARSE_NONET));
        if (!mReader) throw std::bad_alloc();
        xmlTextReaderSetErrorHandler(mReader.get(), KeepError, this);
    }
    XmlReader(const XmlReader&) = delete;
    XmlReader& operator=(const XmlReader&) = delete;

    /// Goes on to the next node; false at the end.
    bool Next() {
        const int result = xmlTextReaderRead(mReader.get());
        if (mFailure) std::rethrow_exception(mFailure);
        if (result < 0) throw FormatError(mError.empty() ? "not well-formed XML" : mError, mErrorLine);
        return result > 0;
    }
    [[nodiscard]] int Type() const { return xmlTextReaderNodeType(mReader.get()); }
    [[nodiscard]] int Depth() const { return xmlTextReaderDepth(mReader.get()); }
    [[nodiscard]] bool IsEmptyElement() const { return xmlTextReaderIsEmptyElement(mReader.get()) == 1; }
    [[noreturn]] void Fail(StringView why) const {
        throw FormatError(why, xmlTextReaderGetParserLineNumber(mReader.get()));
    }
    [[nodiscard]] StringView Name() const { return View(xmlTextReaderConstLocalName(mReader.get())); }
    [[nodiscard]] StringView Namespace() const { return View(xmlTextReaderConstNamespaceUri(mReader.get())); }
    [[nodiscard]] StringView Value() const { return View(xmlTextReaderConstValue(mReader.get())); }
    /// False if the element has no such attribute.
    bool Attribute(const char* name, String& value) const {
        const std::unique_ptr<xmlChar, void (*)(void*)> found(
            xmlTextReaderGetAttribute(mReader.get(), reinterpret_cast<const xmlChar*>(name)), xmlFree);
        if (found) value = View(found.get());
        return found != nullptr;
    }
    /// Of the document type that is the present node.
    [[nodiscard]] bool DeclaresEntities() const {
        const auto* type = reinterpret_cast<const xmlDtd*>(xmlTextReaderCurrentNode(mReader.get()));
        return type && (type->entities || type->pentities);
    }

  private:
    struct Free {
        void operator()(xmlTextReaderPtr reader) const { xmlFreeTextReader(reader); }
    };

    /// Failures can't pass through the library, so they wait until it has returned.
    static int ReadInput(void* context, char* to, int size) {
        auto* const self = static_cast<XmlReader*>(context);
        try {
            return static_cast<int>(self->mInput.Read(to, static_cast<size_t>(size)));
        } catch (...) {
            self->mFailure = std::current_exception();
            return -1;
        }
    }
    static void KeepError(void* context, const char* message, xmlParserSeverities severity,
                          xmlTextReaderLocatorPtr locator) {
        auto* const self = static_cast<XmlReader*>(context);
        if (severity != XML_PARSER_SEVERITY_ERROR || !self->mError.empty()) return;
        self->mError = Trim(message);
        self->mErrorLine = xmlTextReaderLocatorLineNumber(locator);
    }

    Input& mInput;
    std::unique_ptr<xmlTextReader, Free> mReader;
    std::exception_ptr mFailure;
    String mError;
    int64_t mErrorLine = 0;
};

class XliffReader {
  public:
    XliffReader(Input& input, TranslationImport& import) : mXml(input), mImport(import) {}

    void Read() {
        while (mXml.Next())
            ReadNode();
        if (!mHasRoot) mXml.Fail("not an XLIFF file");
    }

  private:
    void ReadNode() {
        switch (mXml.Type()) {
            case XML_READER_TYPE_ELEMENT:
                return BeginElement();
            case XML_READER_TYPE_END_ELEMENT:
                return EndElement(mXml.Depth());
            case XML_READER_TYPE_TEXT:
            case XML_READER_TYPE_CDATA:
            case XML_READER_TYPE_WHITESPACE:
            case XML_READER_TYPE_SIGNIFICANT_WHITESPACE:
                if (mText && !IsIgnoring()) *mText += mXml.Value();
                return;
            case XML_READER_TYPE_ENTITY_REFERENCE:
                mXml.Fail("an entity, which is not expanded");
            case XML_READER_TYPE_DOCUMENT_TYPE:
                if (mXml.DeclaresEntities()) mXml.Fail("the document type declares entities");
                return;
            default:
                return;
        }
    }

    void BeginElement() {
        const int depth = mXml.Depth();
        const bool isEmpty = mXml.IsEmptyElement();
        if (depth == 0) BeginRoot();
        if (!IsIgnoring()) BeginElementAt(depth);
        if (isEmpty) EndElement(depth);
    }

    void BeginRoot() {
        String version;
        mHasRoot = true;
        mNamespace = mXml.Namespace();
        if (mXml.Name() != "xliff") mXml.Fail("not an XLIFF file");
        if (!mXml.Attribute("version", version) || !version.starts_with("1."))
            mXml.Fail("XLIFF of version \"" + version + "\", not 1.2");
    }

    void BeginElementAt(int depth) {
        const StringView name = mXml.Name();
        if (mXml.Namespace() != mNamespace) {
            mIgnoredDepth = depth;  // somebody's extension
        } else if (mUnitDepth < 0) {
            if (name == "trans-unit") BeginUnit(depth);
        } else if (mText) {
            BeginInline(name);
        } else if (name == "source") {
            mText = &mSource;
        } else if (name == "target") {
            BeginTarget();
        } else {
            mIgnoredDepth = depth;  // such as the proposals of `alt-trans`
        }
    }

    void BeginUnit(int depth) {
        mUnitDepth = depth;
        if (!mXml.Attribute("id", mKey)) mXml.Fail("a trans-unit without an id");
        mSource.clear();
        mTarget.clear();
        mIsUsable = true;
    }

    void BeginTarget() {
        String state;
        mText = &mTarget;
        mTarget.clear();
        if (mXml.Attribute("state", state) && (state == "new" || state == "needs-translation"))
            mIsUsable = false;
    }

    /// These stand for a text outside the file; the others hold their text.
    void BeginInline(StringView name) {
        if (name != "x" && name != "bx" && name != "ex") return;
        String text;
        if (mXml.Attribute("equiv-text", text))
            *mText += text;
        else if (mText == &mTarget)
            mIsUsable = false;
    }

    void EndElement(int depth) {
        if (IsIgnoring()) {
            if (depth == mIgnoredDepth) mIgnoredDepth = -1;
        } else if (depth == mUnitDepth) {
            mUnitDepth = -1;
            EndUnit();
        } else if (mUnitDepth >= 0 && depth == mUnitDepth + 1) {
            mText = nullptr;
        }
    }

    void EndUnit() {
        if (!mIsUsable || mTarget.empty()) return mImport.Skip();
        mImport.Take({mKey, mSource, mTarget});
    }

    [[nodiscard]] bool IsIgnoring() const { return mIgnoredDepth >= 0; }

    XmlReader mXml;
    TranslationImport& mImport;
    bool mHasRoot = false;
    String mNamespace;       // the root's
    int mIgnoredDepth = -1;  // of the outermost element that is passed over
    // The unit that is being read; its depth is -1 outside.
    int mUnitDepth = -1;
    String mKey, mSource, mTarget;
    String* mText = nullptr;  // what the text goes into
    bool mIsUsable = false;
};

}  // namespace

void ReadXliff(Input& input, TranslationImport& import) {
    XliffReader(input, import).Read();
}

}  // namespace sorbel
