#pragma once

#include <optional>

#include "exchange/Input.h"
#include "platform/Exceptions.h"
#include "platform/Text.h"

namespace sorbel {

/// An element that begins, while it is told.
class XmlElement {
  public:
    /// As libxml2's `startElementNsSAX2Func` gives them.
    XmlElement(const unsigned char* name, const unsigned char* space, int attributes,
               const unsigned char** values)
        : mName(name), mSpace(space), mAttributes(attributes), mValues(values) {}

    [[nodiscard]] StringView Name() const;       ///< without its prefix
    [[nodiscard]] StringView Namespace() const;  ///< empty if there is none
    /// The value of an attribute without a namespace; nothing if there is none.
    [[nodiscard]] std::optional<StringView> Attribute(StringView name) const;

  private:
    const unsigned char *mName, *mSpace;
    int mAttributes;
    const unsigned char** mValues;
};

/// Hears of the parts of a document in their order. Depths are 0 for the root.
class XmlHandler {
  public:
    virtual ~XmlHandler() = default;
    virtual void BeginElement(const XmlElement& element, int depth) = 0;
    virtual void EndElement(int depth) = 0;
    /// A piece of text or of a CDATA section.
    virtual void Text(StringView text) = 0;
};

/// What a handler throws for a document that it can't take; `ParseXml` knows the line.
class XmlFault : public RuntimeException {
  public:
    using RuntimeException::RuntimeException;
};

/// Parses a document with libxml2, piece by piece, and nothing but it: a document that declares entities or
/// uses any but the five of XML is refused, no document type is fetched, and elements are at most 256 deep.
/// Fails with FormatError.
void ParseXml(Input& input, XmlHandler& handler);

}  // namespace sorbel
