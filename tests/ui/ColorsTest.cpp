#include <gtest/gtest.h>

#include <deque>
#include <map>

#include "platform/Exceptions.h"
#include "ui/MacColors.h"
#include "ui/PlatformColors.h"
#include "ui/TestDesktop.h"

namespace sorbel::Platform::Colors {
namespace {

using Word = MacRuntime::Word;

/// Objects that answer the messages that they were given answers for.
class TestRuntime : public MacRuntime {
  public:
    struct Thing {
        String Kind;
        std::map<String, Word, std::less<>> Answers;
        std::map<String, double, std::less<>> Numbers;
        std::vector<Word> Elements;
    };
    std::vector<String> Sent;  // except questions what an object is and knows

    Thing& Make(const String& kind) {
        mThings.push_back({kind, {}, {}, {}});
        return mThings.back();
    }
    static Word Name(const Thing& thing) { return reinterpret_cast<Word>(&thing); }
    /// A colour that can give its components.
    Word MakeColor(double red, double green, double blue, double alpha) {
        Thing& color = Make("NSColor");
        color.Answers["colorUsingColorSpace:"] = Name(color);
        color.Numbers = {{"redComponent", red},
                         {"greenComponent", green},
                         {"blueComponent", blue},
                         {"alphaComponent", alpha}};
        return Name(color);
    }
    Word MakeArray(std::vector<Word> elements) {
        Thing& array = Make("NSArray");
        array.Answers["count"] = elements.size();
        array.Elements = std::move(elements);
        return Name(array);
    }
    Thing& ClassNamed(StringView name) {
        return *mClasses.try_emplace(String(name), &Make("class")).first->second;
    }
    void Know(const String& selector, Word answer) { ClassNamed("NSColor").Answers[selector] = answer; }

    Word Class(StringView name) override { return Name(ClassNamed(name)); }
    Word Selector(StringView name) override {
        return reinterpret_cast<Word>(&*mSelectors.try_emplace(String(name)).first);
    }
    Word Send(Word receiver, StringView selector, std::initializer_list<Word> arguments) override {
        if (!receiver) return 0;
        const Thing& thing = *reinterpret_cast<const Thing*>(receiver);
        if (selector == "respondsToSelector:")
            return thing.Answers.contains(reinterpret_cast<Named*>(*arguments.begin())->first);
        if (selector == "isKindOfClass:") return *arguments.begin() == Class(thing.Kind);
        Sent.emplace_back(selector);
        if (selector == "objectAtIndex:") return thing.Elements.at(*arguments.begin());
        const auto answer = thing.Answers.find(selector);
        return answer == thing.Answers.end() ? 0 : answer->second;
    }
    double SendForNumber(Word receiver, StringView selector) override {
        const auto& numbers = reinterpret_cast<const Thing*>(receiver)->Numbers;
        const auto number = numbers.find(selector);
        if (number == numbers.end()) throw RuntimeException("not a component");
        return number->second;
    }
    Word PictureContext() override { return 77; }
    void FillPicture() override { Sent.emplace_back("fill"); }
    Color PicturePixel(int x, int y) override { return Color::FromRGB(1, unsigned(x), unsigned(y)); }
    Color HighlightColor() override { return Color{0x424242}; }

  private:
    using Named = std::pair<const String, int>;
    std::deque<Thing> mThings;
    std::map<String, Thing*> mClasses;
    std::map<String, int> mSelectors;
};

class MacColorsTest : public testing::Test {
  protected:
    TestRuntime mMac;
    MacColors mColors{mMac};
    uint32_t Look(StringView name) { return GetMacNamedColorInternal(mColors, name).Value; }
};

TEST_F(MacColorsTest, ComponentsBecomeBytes) {
    EXPECT_EQ(mColors.NSColorToColor(mMac.MakeColor(1, 0.5, 0, 1)), Color::FromRGB(255, 127, 0, 0));
    EXPECT_EQ(mColors.NSColorToColor(mMac.MakeColor(0, 0, 1, 0)), Color::FromRGB(0, 0, 255, 255));
    EXPECT_EQ(mColors.NSColorToColor(mMac.MakeColor(1.5, -1, 0, 1)), Color::FromRGB(255, 0, 0, 0));
    const Word first = mMac.MakeColor(0, 1, 0, 1), second = mMac.MakeColor(1, 0, 0, 1);
    EXPECT_EQ(mColors.NSColorToColor(mMac.MakeArray({first, second})), Color::FromRGB(0, 255, 0));
    EXPECT_EQ(mColors.NSColorToColor(0), Color());

    TestRuntime::Thing& broken = mMac.Make("NSColor");
    broken.Answers["colorUsingColorSpace:"] = TestRuntime::Name(broken);
    EXPECT_EQ(mColors.NSColorToColor(TestRuntime::Name(broken)), Color());
}

TEST_F(MacColorsTest, ColorsOfOtherTypesAreConvertedOrDrawn) {
    TestRuntime::Thing& catalog = mMac.Make("NSColor");
    catalog.Answers["type"] = 1;
    TestRuntime::Thing& contexts = mMac.ClassNamed("NSGraphicsContext");
    TestRuntime::Thing& current = mMac.Make("NSGraphicsContext");
    contexts.Answers["currentContext"] = TestRuntime::Name(current);
    mMac.Sent.clear();
    EXPECT_EQ(mColors.NSColorToColor(TestRuntime::Name(catalog)), Color::FromRGB(1, 5, 5));
    EXPECT_EQ(Join(mMac.Sent, " "),
              "type currentContext CGContext graphicsContextWithCGContext:flipped: saveGraphicsState "
              "setCurrentContext: set fill restoreGraphicsState");

    current.Answers["CGContext"] = mMac.PictureContext();  // drawing goes to the picture already
    mMac.Sent.clear();
    (void)mColors.NSColorToColor(TestRuntime::Name(catalog));
    EXPECT_EQ(Join(mMac.Sent, " "), "type currentContext CGContext set fill");

    catalog.Answers["colorUsingType:"] = mMac.MakeColor(0, 0, 1, 1);
    EXPECT_EQ(mColors.NSColorToColor(TestRuntime::Name(catalog)), Color::FromRGB(0, 0, 255));
}

TEST_F(MacColorsTest, MissingColorsHaveSubstitutes) {
    EXPECT_EQ(Look("separatorColor"), 0x999999u);
    EXPECT_EQ(Look("findHighlightColor"), 0x424242u);
    EXPECT_EQ(Look("primaryContentBackgroundColor"), 0xFFFFFFu);
    EXPECT_EQ(Look("secondaryContentBackgroundColor"), 0xF5F5F5u);
    EXPECT_EQ(Look("linkColor"), 0u);
    EXPECT_EQ(Look("gridColor"), 0u);

    mMac.Know("systemBlueColor", mMac.MakeColor(0, 0, 1, 1));
    mMac.Know("systemGrayColor", mMac.MakeColor(1, 1, 1, 1));
    mMac.Know("secondarySelectedControlColor", mMac.MakeColor(0, 1, 1, 1));
    EXPECT_EQ(Look("controlAccentColor"), 0x0000FFu);
    mMac.Know("currentControlTint", 6);
    EXPECT_EQ(Look("controlAccentColor"), 0xFFFFFFu);
    EXPECT_EQ(Look("unemphasizedSelectedContentBackgroundColor"), 0x00FFFFu);
    EXPECT_EQ(Look("secondarySelectedControlColor"), 0u);  // not one of the names

    for (const String name : {"separatorColor", "findHighlightColor", "controlAccentColor",
                              "unemphasizedSelectedContentBackgroundColor"}) {
        mMac.Know(name, mMac.MakeColor(0, 1, 0, 1));
        EXPECT_EQ(Look(name), 0x00FF00u) << name;
    }
}

TEST_F(MacColorsTest, RowBackgroundsAreElementsOfAnArray) {
    const Word red = mMac.MakeColor(1, 0, 0, 1), green = mMac.MakeColor(0, 1, 0, 1);
    mMac.Know("alternatingContentBackgroundColors", mMac.MakeArray({green, red}));
    EXPECT_EQ(Look("primaryContentBackgroundColor"), 0x00FF00u);
    EXPECT_EQ(Look("secondaryContentBackgroundColor"), 0xFF0000u);
    mMac.Know("controlAlternatingRowBackgroundColors", mMac.MakeArray({red}));
    EXPECT_EQ(Look("PrimaryContentBackgroundColor"), 0xFF0000u);
    EXPECT_EQ(Look("secondaryContentBackgroundColor"), 0u);
}

TEST(PlatformColorsTest, ComeFromTheDesktopOnceForEachSpelling) {
    test::TestDesktop desktop;
    const Color background = Color::FromRGB(1, 2, 3);
    desktop.Colors.Set("controlBackgroundColor", background);
    desktop.Colors.Set("unlistedColor", background);
    UseDesktop(&desktop);
    EXPECT_EQ(ControlBackgroundColor(), background);
    EXPECT_EQ(TextColor(), desktop.Theme(SystemColor::Text));
    EXPECT_EQ(GetMacNamedColor("findHighlightColor"), desktop.Theme(SystemColor::Highlight));
    EXPECT_EQ(GetMacNamedColor("unlistedColor"), Color());
    EXPECT_EQ(SecondaryLabelColor(), Color());

    desktop.Asked = 0;
    desktop.Colors.Set("controlBackgroundColor", Color{9});
    EXPECT_EQ(ControlBackgroundColor(), background);
    EXPECT_EQ(SecondaryLabelColor(), Color());
    EXPECT_EQ(desktop.Asked, 0);
    EXPECT_EQ(GetMacNamedColor("controlbackgroundcolor"), Color{9});
    ResetCache();
    EXPECT_EQ(ControlBackgroundColor(), Color{9});
    UseDesktop(nullptr);
    EXPECT_EQ(ControlBackgroundColor(), Color());
    EXPECT_EQ(TextColor(), Color());
}

}  // namespace
}  // namespace sorbel::Platform::Colors
