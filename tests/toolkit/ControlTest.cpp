#include <gtest/gtest.h>

#include "TestProgram.h"
#include "platform/Exceptions.h"
#include "ui/toolkit/Canvas.h"
#include "ui/toolkit/Label.h"
#include "ui/toolkit/PopupMenu.h"
#include "ui/toolkit/TextEditor.h"

namespace sorbel {
namespace {

TEST(Control, UserActsOnlyOnWhatCanBeUsed) {
    TestProgram program;
    Label label(*program.Window, "Label", {});
    TextField field(*program.Window, "Field", {});
    TestView view;
    field.Attach(&view);
    field.SetEnabled(true);
    field.SetLeft(0);
    EXPECT_TRUE(view.Notices.empty());
    field.SetFocus();
    label.AcceleratorKey = [&] {
        label.SetFocus();
    };
    label.SetEnabled(false);
    label.UserAccelerator();
    label.SetEnabled(true);
    label.SetVisible(false);
    label.UserAccelerator();
    EXPECT_TRUE(field.HasFocus());
    label.SetVisible(true);
    label.UserAccelerator();
    EXPECT_TRUE(label.HasFocus() && !field.HasFocus());
    EXPECT_EQ(view.Take(Aspect::Focus), 2u);
}

TEST(Control, TheScreenIsUpToDateBeforeAUserActs) {
    TestProgram program;
    TestWindow& window = *program.Window;
    TextField field(window, "Field", {});
    PopupMenu menu(window, "Menu", {});
    menu.AddRow("row");
    MenuItem command("Command", "Command");
    program.App.AddMenuHandler("Command", [&] {
        window.SetTitle("commanded");
        return true;
    });
    window.OnKey = [&] {
        window.SetTitle("keyed");
    };
    window.Show();
    const auto state = [&] {
        return field.Text() + window.Title() + std::to_string(window.Width()) +
               std::to_string(menu.ListIndex()) + (window.Focus() ? window.Focus()->Name() : "") +
               (window.IsOpen() ? "" : "closed");
    };
    String shown;
    program.Backend.WhenShowing = [&] {
        shown = state();
    };
    const std::function<void()> acts[] = {
        [&] { field.UserSetText("typed"); },
        [&] { menu.UserChoose(0); },
        [&] { (void)program.App.Choose(command); },
        [&] { window.UserKeyDown("x"); },
        [&] { window.UserFocus(&field); },
        [&] {
            window.UserResize({700, 500}, true);
        },
        [&] { window.UserClose(); },
    };
    for (const auto& act : acts) {
        shown.clear();
        const String before = state();
        act();
        EXPECT_EQ(shown, before);
        EXPECT_NE(state(), before);
    }
}

TEST(TextEditor, CodeAlwaysRaisesTextChangeAndAUserOnlyForADifference) {
    TestProgram program;
    TextField field(*program.Window, "Field", {});
    std::vector<String> seen;
    field.TextChange = [&] {
        seen.push_back(field.Text());
    };
    field.SetText("a");
    field.SetText("a");
    field.UserSetText("a");
    field.UserSetText("A");
    field.ReadOnly = true;
    field.UserSetText("b");
    field.ReadOnly = false;
    field.SetEnabled(false);
    field.UserSetText("c");
    field.SetText("d");
    EXPECT_EQ(seen, (std::vector<String>{"a", "a", "A", "d"}));
}

TEST(TextArea, KeepsRunsOfColour) {
    TestProgram program;
    TextArea area(*program.Window, "Area", {});
    int changes = 0;
    area.TextChange = [&] {
        ++changes;
    };
    const auto runs = [&area] {
        String text;
        for (const TextArea::Run& run : area.Runs())
            text += std::to_string(run.Length) + "x" + std::to_string(run.Color.Value) + " ";
        return text;
    };
    area.SetTextColor({1});
    area.SetText("");
    EXPECT_EQ(runs(), "");
    area.SetSelTextColor({2});
    for (const char* piece : {"new", "", "er"})
        area.SetSelText(piece);
    area.SetSelTextColor({3});
    area.SetSelText("old");
    EXPECT_EQ(area.Text(), "newerold");
    EXPECT_EQ(runs(), "5x2 3x3 ");
    EXPECT_EQ(changes, 5);
    area.SetTextColor({4});
    EXPECT_EQ(runs(), "8x4 ");
    area.UserSetText("typed");
    EXPECT_EQ(runs(), "5x4 ");
}

TEST(PopupMenu, RaisesChangeForEveryAssignment) {
    TestProgram program;
    PopupMenu menu(*program.Window, "Menu", {});
    std::vector<int64_t> changes;
    menu.Change = [&] {
        changes.push_back(menu.ListIndex());
    };
    menu.AddRow("All");
    menu.AddRow("One");
    menu.SetRowTag(1, std::make_shared<int>(5));
    menu.SetListIndex(0);
    menu.SetListIndex(0);
    menu.UserChoose(1);
    menu.UserChoose(2);
    EXPECT_EQ(*std::static_pointer_cast<int>(menu.RowTag(menu.ListIndex())), 5);
    menu.DeleteAllRows();
    EXPECT_EQ(menu.ListIndex(), -1);
    EXPECT_EQ(changes, (std::vector<int64_t>{0, 0, 1}));
    EXPECT_THROW((void)menu.RowTag(0), OutOfBoundsException);
}

TEST(Canvas, DragsOnlyAfterAClaimedPress) {
    struct Handle : Canvas {
        using Canvas::Canvas;
        std::vector<String> Log;
        void Event_MouseDrag(int x, int) override { Log.push_back("drag " + std::to_string(x)); }
        void Event_MouseUp(int x, int) override { Log.push_back("up " + std::to_string(x)); }
    };
    TestProgram program;
    Handle handle(*program.Window, "Handle", {100, 200, 8, 8});
    EXPECT_FALSE(handle.UserMouseDown(3, 4));
    handle.UserMouseDrag(5, 4);
    handle.UserMouseUp(5, 4);
    EXPECT_TRUE(handle.Log.empty());
    EXPECT_EQ(program.Window->Log, (std::vector<String>{"Mouse 103,204"}));

    handle.MouseDown = [](int x, int) {
        return x == 3;
    };
    EXPECT_TRUE(handle.UserMouseDown(3, 4));
    handle.UserMouseDrag(5, 4);
    handle.UserMouseUp(6, 4);
    handle.UserMouseDrag(7, 4);
    EXPECT_EQ(handle.Log, (std::vector<String>{"drag 5", "up 6"}));
    EXPECT_EQ(program.Window->Log.size(), 1u);
}

}  // namespace
}  // namespace sorbel
