#include <gtest/gtest.h>

#include "ui/IconFiles.h"
#include "ui/Icons.h"
#include "ui/OptionsButton.h"
#include "ui/PlatformColors.h"
#include "ui/SimpleSplitter.h"
#include "ui/TestDesktop.h"

namespace sorbel {
namespace {

class TestWindow : public Window {
  public:
    using Window::Window;
    [[nodiscard]] String ClassName() const override { return "TestWindow"; }
};

/// Writes down each drawing with the colour in force.
class DrawingLog : public Graphics {
  public:
    DrawingLog(int width, int height) : mWidth(width), mHeight(height) {}
    std::vector<String> Lines;

    [[nodiscard]] int Width() const override { return mWidth; }
    [[nodiscard]] int Height() const override { return mHeight; }
    [[nodiscard]] double StringWidth(StringView) const override { return 0; }
    void DrawPicture(const Picture& picture, int x, int y) override {
        const String tint = picture.Tinted ? std::to_string(picture.Tint.Value) : "untinted";
        Lines.push_back(picture.IconName + " " + tint + " at " + std::to_string(x) + "," + std::to_string(y));
    }
    void DrawLine(int, int, int, int) override { Lines.emplace_back("line"); }
    void DrawRect(int x, int y, int width, int height) override { Area("rect", x, y, width, height); }
    void FillRect(int x, int y, int width, int height) override { Area("fill", x, y, width, height); }

  private:
    void Area(const String& what, int x, int y, int width, int height) {
        String line = what + " " + std::to_string(ForeColor.Value);
        for (const int number : {x, y, width, height})
            line += " " + std::to_string(number);
        Lines.push_back(line);
    }
    int mWidth, mHeight;
};

class ControlsTest : public testing::Test {
  protected:
    test::TestDesktop mDesktop;
    Application mApp{mDesktop};
    std::shared_ptr<TestWindow> mWindow = std::make_shared<TestWindow>(mApp, "Test", Window::Size{640, 480});
};

TEST_F(ControlsTest, SplitterFollowsTheMouseAndTheOwnersLimit) {
    SimpleSplitter splitter(*mWindow, "SimpleSplitter1", {362, 5, 8, 480});
    splitter.UserMouseDown(3, 100);
    splitter.UserMouseDrag(8, 300);
    EXPECT_EQ(splitter.Left(), 367);  // also without a handler
    EXPECT_EQ(splitter.Top(), 5);

    int moves = 0;
    splitter.Moved = [&] {
        ++moves;
        splitter.SetLeft(std::min(splitter.Left(), 400));
    };
    splitter.UserMouseDrag(103, 0);
    EXPECT_EQ(splitter.Left(), 400);
    splitter.UserMouseDrag(-7, 0);  // from the limit, not from where the mouse has been
    EXPECT_EQ(splitter.Left(), 390);
    splitter.UserMouseDrag(3, 0);
    EXPECT_EQ(splitter.Left(), 390);
    EXPECT_EQ(moves, 3);
    splitter.UserMouseUp(3, 0);
    splitter.UserMouseDrag(50, 0);
    EXPECT_EQ(moves, 3);
}

TEST_F(ControlsTest, SplitterMovesAlongOneAxis) {
    SimpleSplitter tall(*mWindow, "tall", {100, 10, 7, 8}), square(*mWindow, "square", {100, 10, 8, 8});
    int moves = 0, opened = 0;
    tall.Moved = square.Moved = [&] {
        ++moves;
    };
    tall.Open = square.Open = [&] {
        ++opened;
    };
    tall.MoveTo(50);
    square.MoveTo(50);
    EXPECT_EQ(tall.Place(), (Bounds{50, 10, 7, 8}));
    EXPECT_EQ(square.Place(), (Bounds{100, 50, 8, 8}));
    tall.MoveTo(50);
    square.MoveTo(50);
    EXPECT_EQ(moves, 4);

    mWindow->Show();
    EXPECT_EQ(opened, 2);
    EXPECT_EQ(tall.Cursor(), MouseCursor::SplitterEastWest);
    EXPECT_EQ(square.Cursor(), MouseCursor::SplitterNorthSouth);
}

TEST_F(ControlsTest, SplitterDrawsItsGripInTheMiddle) {
    test::IconFiles::WritePng("SeparatorSmall.png", 8, 8);
    SimpleSplitter splitter(*mWindow, "SimpleSplitter2", {372, 176, 248, 12});
    DrawingLog g(248, 12);
    splitter.Event_Paint(g);
    EXPECT_EQ(g.Lines, std::vector<String>{"SeparatorSmall untinted at 120,2"});
}

TEST_F(ControlsTest, OptionsButtonDrawsBackgroundIconAndBorder) {
    mDesktop.Colors.Set("controlBackgroundColor", Color{5});
    mDesktop.Colors.Set("quaternaryLabelColor", Color{6});
    Platform::Colors::UseDesktop(&mDesktop);
    OptionsButton button(*mWindow, "SearchOptionsMenu", {337, 13, 22, 22});
    DrawingLog bare(22, 22);
    button.Event_Paint(bare);
    EXPECT_EQ(bare.Lines, (std::vector<String>{"fill 5 0 0 22 22", "rect 6 0 0 22 22"}));

    test::IconFiles::WritePng("OptionsMenu.png", 17, 16);
    button.Icon = Icons::GetIcon("OptionsMenu");
    DrawingLog g(22, 22);
    button.Event_Paint(g);
    const String tint = std::to_string(mDesktop.Theme(SystemColor::Text).Value);
    EXPECT_EQ(g.Lines, (std::vector<String>{"fill 5 0 0 22 22", "OptionsMenu " + tint + " at 2,3",
                                            "rect 6 0 0 22 22"}));
    Platform::Colors::UseDesktop(nullptr);
}

}  // namespace
}  // namespace sorbel
