// The push parser and not `xmlTextReader`: that makes nodes of all that it reads, and so takes nearly three
// times as long.
#include "exchange/XmlParser.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <exception>
#include <memory>
#include <new>
#include <vector>

#include "exchange/ExchangeError.h"

namespace sorbel {

namespace {

StringView View(const xmlChar* text) {
    return text ? StringView(reinterpret_cast<const char*>(text)) : StringView();
}

class XmlParser {
  public:
    explicit XmlParser(XmlHandler& handler) : mHandler(handler) {
        xmlSAXHandler calls = {};
        calls.initialized = XML_SAX2_MAGIC;
        calls.startElementNs = BeginElement;
        calls.endElementNs = EndElement;
        calls.characters = calls.ignorableWhitespace = calls.cdataBlock = Characters;
        calls.reference = Reference;
        calls.entityDecl = EntityDeclaration;
        mContext.reset(xmlCreatePushParserCtxt(&calls, this, nullptr, 0, nullptr));
        if (!mContext) throw std::bad_alloc();
        // NOENT: without it an "&amp;" in an attribute stays one. No other entity is ever known here.
        xmlCtxtUseOptions(mContext.get(),
                          XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    }
    XmlParser(const XmlParser&) = delete;
    XmlParser& operator=(const XmlParser&) = delete;

    void Parse(Input& input) {
        constexpr size_t pieceSize = size_t{1} << 16;
        std::vector<char> piece(pieceSize);
        size_t size = input.Read(piece.data(), piece.size());
        if (size == 0) throw FormatError("the file is empty", 0);
        for (bool more = true; more;) {
            more = size > 0;
            const int error =
                xmlParseChunk(mContext.get(), piece.data(), static_cast<int>(size), more ? 0 : 1);
            if (mFailure) std::rethrow_exception(mFailure);
            if (error != 0 && !mContext->wellFormed) FailAtLastError();
            size = input.Read(piece.data(), piece.size());
        }
    }

  private:
    struct Free {
        void operator()(xmlParserCtxtPtr context) const {
            if (context->myDoc) xmlFreeDoc(context->myDoc);
            xmlFreeParserCtxt(context);
        }
    };

    [[noreturn]] void FailAtLastError() const {
        const auto* const error = xmlCtxtGetLastError(mContext.get());
        const String why = error && error->message ? Trim(error->message) : "";
        throw FormatError(why.empty() ? "not well-formed XML" : why, error ? error->line : 0);
    }

    /// Failures can't pass through the library, so they wait until it has returned.
    template <typename Work>
    static void Guarded(void* context, Work work) {
        auto* const self = static_cast<XmlParser*>(context);
        if (self->mFailure) return;
        try {
            work(*self);
        } catch (const XmlFault& fault) {
            self->mFailure = std::make_exception_ptr(
                FormatError(fault.Message(), xmlSAX2GetLineNumber(self->mContext.get())));
        } catch (...) {
            self->mFailure = std::current_exception();
        }
        if (self->mFailure) xmlStopParser(self->mContext.get());
    }

    static void BeginElement(void* context, const xmlChar* name, const xmlChar*, const xmlChar* space, int,
                             const xmlChar**, int attributes, int, const xmlChar** values) {
        constexpr int deepest = 256;
        Guarded(context, [&](XmlParser& self) {
            if (self.mDepth >= deepest) throw XmlFault("elements too deep one inside the other");
            self.mHandler.BeginElement(XmlElement(name, space, attributes, values), self.mDepth++);
        });
    }
    static void EndElement(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
        Guarded(context, [](XmlParser& self) { self.mHandler.EndElement(--self.mDepth); });
    }
    static void Characters(void* context, const xmlChar* text, int size) {
        Guarded(context, [&](XmlParser& self) {
            self.mHandler.Text({reinterpret_cast<const char*>(text), static_cast<size_t>(size)});
        });
    }
    static void Reference(void* context, const xmlChar* name) {
        Guarded(context, [&](XmlParser&) {
            throw XmlFault("the entity \"" + String(View(name)) + "\", which is not expanded");
        });
    }
    static void EntityDeclaration(void* context, const xmlChar* name, int, const xmlChar*, const xmlChar*,
                                  xmlChar*) {
        Guarded(context, [&](XmlParser&) {
            throw XmlFault("the document type declares the entity \"" + String(View(name)) + "\"");
        });
    }

    XmlHandler& mHandler;
    std::unique_ptr<xmlParserCtxt, Free> mContext;
    std::exception_ptr mFailure;
    int mDepth = 0;
};

}  // namespace

StringView XmlElement::Name() const {
    return View(mName);
}

StringView XmlElement::Namespace() const {
    return View(mSpace);
}

std::optional<StringView> XmlElement::Attribute(StringView name) const {
    // Five pointers each: local name, prefix, namespace, and where the value begins and ends.
    for (const xmlChar** at = mValues; at != mValues + 5 * static_cast<ptrdiff_t>(mAttributes); at += 5)
        if (!at[1] && View(at[0]) == name)
            return StringView(reinterpret_cast<const char*>(at[3]), static_cast<size_t>(at[4] - at[3]));
    return std::nullopt;
}

void ParseXml(Input& input, XmlHandler& handler) {
    XmlParser(handler).Parse(input);
}

}  // namespace sorbel
