#include <gtest/gtest.h>

#include "TestProgram.h"
#include "platform/Exceptions.h"
#include "ui/toolkit/Canvas.h"
#include "ui/toolkit/Dialogs.h"
#include "ui/toolkit/Label.h"

namespace sorbel {
namespace {

using Log = std::vector<String>;

TEST(Window, OpensOnceAndThenComesToTheFront) {
    TestProgram program;
    Canvas canvas(*program.Window, "Canvas", {});
    canvas.Open = [&] {
        program.Window->Log.emplace_back("Canvas");
    };
    program.Window->Show();
    const auto second = std::make_shared<TestWindow>(program.App);
    second->Show();
    EXPECT_EQ(program.App.FrontWindow(), second.get());
    EXPECT_NE(second->Top(), program.Window->Top());
    TestView view;
    program.Window->Attach(&view);
    program.Window->Show();
    EXPECT_EQ(&program.App.WindowAt(0), program.Window.get());
    EXPECT_EQ(&program.App.WindowAt(1), second.get());
    EXPECT_THROW((void)program.App.WindowAt(2), OutOfBoundsException);
    EXPECT_EQ(view.Take(Aspect::Order), 1u);
    EXPECT_EQ(program.Window->Log, (Log{"Open", "Canvas"}));
    EXPECT_EQ(program.Backend.Attached, (std::vector<Window*>{program.Window.get(), second.get()}));
}

TEST(Window, ClosesOnceUnlessItRefuses) {
    TestProgram program;
    EXPECT_TRUE(program.Window->Close());
    program.Window->Show();
    program.Window->Refuses = true;
    EXPECT_FALSE(program.Window->UserClose());
    EXPECT_TRUE(program.Window->IsOpen());
    program.Window->Refuses = false;
    EXPECT_TRUE(program.Window->UserClose());
    EXPECT_TRUE(program.Window->Close());
    program.Window->Show();
    EXPECT_FALSE(program.Window->IsOpen());
    EXPECT_EQ(program.Window->Log, (Log{"Open", "Closing?", "Closing?", "Close"}));
    EXPECT_EQ(program.App.WindowCount(), 0);
    EXPECT_TRUE(program.Backend.Attached.empty());
}

TEST(Window, AsksOneQuestionAtATime) {
    TestProgram program;
    TestWindow& window = *program.Window;
    const auto other = std::make_shared<TestWindow>(program.App);
    window.Show();
    other->Show();
    window.OnAsking = [&] {
        EXPECT_FALSE(window.UserClose());
        EXPECT_EQ(program.App.FrontWindow(), &window);  // with its question
        program.App.BringToFront(*other);
        EXPECT_FALSE(program.App.Quit());
        EXPECT_FALSE(program.App.Ended() || other->IsOpen());  // quit closes those in front
    };
    EXPECT_TRUE(window.UserClose());
    EXPECT_EQ(window.Log, (Log{"Open", "Closing?", "Close"}));

    program.Window = std::make_shared<TestWindow>(program.App);
    program.Window->Show();
    program.Window->OnAsking = [] {
        throw IOException();
    };
    EXPECT_FALSE(program.Window->UserClose());
    program.Window->OnAsking = nullptr;
    EXPECT_TRUE(program.Window->UserClose());  // no question is up after a failure
}

TEST(Window, OutlivesTheDialogOnIt) {
    TestProgram program;
    std::weak_ptr<TestWindow> watch = program.Window;
    program.Window->Show();
    program.Window.reset();
    program.Backend.Buttons = {FakeBackend::Button::Action};
    program.Backend.WhileAsking = [&] {
        watch.lock()->UserClose();
        program.App.Perform([] {});
        EXPECT_FALSE(watch.expired());
    };
    TestWindow* const window = watch.lock().get();
    MessageDialog dialog;
    dialog.ShowModalWithin(*window);
    EXPECT_TRUE(watch.expired());
}

TEST(Window, OutlivesTheHandlerThatClosesIt) {
    TestProgram program;
    TestWindow& window = *program.Window;
    const std::weak_ptr<TestWindow> watch = program.Window;
    window.OnKey = [&window, &watch] {
        window.Close();
        window.App().Perform([] {});  // as a dialog's event loop does
        EXPECT_FALSE(watch.expired());
        window.Log.emplace_back("still here");
    };
    window.Show();
    program.Window.reset();
    window.UserKeyDown("x");
    EXPECT_TRUE(watch.expired());

    program.Window = std::make_shared<TestWindow>(program.App);
    program.Window->Show();
    const std::weak_ptr<TestWindow> other = std::exchange(program.Window, nullptr);
    other.lock()->Close();  // not by a user
    program.App.Perform([&other] { EXPECT_TRUE(other.expired()); });
}

TEST(Window, ControlsFollowTheEdgesThatTheyAreLockedTo) {
    TestProgram program;
    Label fixed(*program.Window, "None", {1, 2, 30, 40});
    Label wide(*program.Window, "Wide", {1, 2, 30, 40}, {true, false, true, false});
    Label right(*program.Window, "Right", {1, 2, 30, 40}, {false, true, true, false});
    Label tall(*program.Window, "Tall", {1, 2, 30, 40}, {true, true, false, true});
    Label low(*program.Window, "Low", {1, 2, 30, 40}, {false, false, false, true});
    program.Window->UserResize({650, 500}, true);
    EXPECT_EQ(fixed.Place(), (Bounds{1, 2, 30, 40}));
    EXPECT_EQ(wide.Place(), (Bounds{1, 2, 40, 40}));
    EXPECT_EQ(right.Place(), (Bounds{11, 2, 30, 40}));
    EXPECT_EQ(tall.Place(), (Bounds{1, 2, 30, 60}));
    EXPECT_EQ(low.Place(), (Bounds{1, 22, 30, 40}));

    program.Window->UserResize({10, 100000});
    EXPECT_EQ(program.Window->Width(), 64);
    EXPECT_EQ(program.Window->Height(), 32000);
    EXPECT_EQ(wide.Width(), 30 - 576);
    program.Window->UserResize({640, 480});
    EXPECT_EQ(wide.Place(), (Bounds{1, 2, 30, 40}));
    EXPECT_EQ(low.Place(), (Bounds{1, 2, 30, 40}));
    EXPECT_EQ(program.Window->Log, (Log{"Resizing", "Resized", "Resized"}));
}

}  // namespace
}  // namespace sorbel
