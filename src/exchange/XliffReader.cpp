#include "exchange/ExchangeError.h"
#include "exchange/Xliff.h"
#include "exchange/XmlParser.h"

namespace sorbel {

namespace {

class XliffReader final : public XmlHandler {
  public:
    explicit XliffReader(TranslationImport& import) : mImport(import) {}

    void BeginElement(const XmlElement& element, int depth) override {
        if (depth == 0) BeginRoot(element);
        if (!IsIgnoring()) BeginElementAt(element, depth);
    }
    void EndElement(int depth) override {
        if (IsIgnoring()) {
            if (depth == mIgnoredDepth) mIgnoredDepth = -1;
        } else if (depth == mUnitDepth) {
            mUnitDepth = -1;
            EndUnit();
        } else if (mUnitDepth >= 0 && depth == mUnitDepth + 1) {
            mText = nullptr;
        }
    }
    void Text(StringView text) override {
        if (mText && !IsIgnoring()) *mText += text;
    }

  private:
    void BeginRoot(const XmlElement& root) {
        const String version(root.Attribute("version").value_or(""));
        mNamespace = root.Namespace();
        if (root.Name() != "xliff") throw XmlFault("not an XLIFF file");
        if (!version.starts_with("1.")) throw XmlFault("XLIFF of version \"" + version + "\", not 1.2");
    }

    void BeginElementAt(const XmlElement& element, int depth) {
        const StringView name = element.Name();
        if (element.Namespace() != mNamespace) {
            mIgnoredDepth = depth;  // somebody's extension
        } else if (mUnitDepth < 0) {
            if (name == "trans-unit") BeginUnit(element, depth);
        } else if (mText) {
            BeginInline(element);
        } else if (name == "source") {
            mText = &mSource;
        } else if (name == "target") {
            BeginTarget(element);
        } else {
            mIgnoredDepth = depth;  // such as the proposals of `alt-trans`
        }
    }

    void BeginUnit(const XmlElement& unit, int depth) {
        const std::optional<StringView> id = unit.Attribute("id");
        if (!id) throw XmlFault("a trans-unit without an id");
        mUnitDepth = depth;
        mKey = *id;
        mSource.clear();
        mTarget.clear();
        mIsUsable = true;
    }

    void BeginTarget(const XmlElement& target) {
        const std::optional<StringView> state = target.Attribute("state");
        mText = &mTarget;
        mTarget.clear();
        if (state == "new" || state == "needs-translation") mIsUsable = false;
    }

    /// These stand for a text outside the file; the others hold their text.
    void BeginInline(const XmlElement& element) {
        if (element.Name() != "x" && element.Name() != "bx" && element.Name() != "ex") return;
        if (const std::optional<StringView> text = element.Attribute("equiv-text"))
            *mText += *text;
        else if (mText == &mTarget)
            mIsUsable = false;
    }

    void EndUnit() {
        if (!mIsUsable || mTarget.empty()) return mImport.Skip();
        mImport.Take({mKey, mSource, mTarget}, {.LosesLineEnds = true});
    }

    [[nodiscard]] bool IsIgnoring() const { return mIgnoredDepth >= 0; }

    TranslationImport& mImport;
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
    XliffReader reader(import);
    ParseXml(input, reader);
}

}  // namespace sorbel
