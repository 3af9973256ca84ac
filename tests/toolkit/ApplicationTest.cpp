#include <gtest/gtest.h>

#include "TestProgram.h"
#include "platform/Exceptions.h"
#include "ui/toolkit/TextEditor.h"

namespace sorbel {
namespace {

using Log = std::vector<String>;

/// A bar with one menu that holds an item for each way of being enabled.
struct MenuTest : testing::Test {
    TestProgram Program;
    Application& App = Program.App;
    TextField Field{*Program.Window, "Field", {}};
    MenuItem* Menu = nullptr;
    Log Ran;

    void SetUp() override {
        App.MenuBar = std::make_unique<MenuBar>();
        Menu = &App.MenuBar->Append(std::make_unique<MenuItem>("EditMenu", "&Edit", "", false));
        for (const char* name : {"Both", "App", "Nobody", "Cut", "Copy", "Quit"})
            Menu->Append(std::make_unique<MenuItem>(name, name));
        Menu->Append(std::make_unique<MenuItem>("Undo", "Undo", "", false));
        Menu->Append(std::make_unique<MenuItem>("Line", "-"));
        Menu->Append(std::make_unique<MenuItem>("Sub", "Sub"))
            .Append(std::make_unique<MenuItem>("Deep", "Deep"));
        Item("Cut").Edit = EditCommand::Cut;
        Item("Copy").Edit = EditCommand::Copy;
        Item("Quit").Role = MenuRole::Quit;
        App.AddMenuHandler("Both", Handler("app both", true));
        App.AddMenuHandler("App", Handler("app", false));
        Program.Window->AddMenuHandler("Both", Handler("window both", true));
        Program.Window->AddMenuHandler("Undo", Handler("undo", true));
        Program.Window->AddMenuHandler("Deep", Handler("deep", true));
    }
    [[nodiscard]] MenuItem& Item(StringView name) const { return *App.MenuBar->FindByName(name); }
    MenuHandler Handler(String text, bool result) {
        return [this, text, result] {
            Ran.push_back(text);
            return result;
        };
    }
    [[nodiscard]] Log Enabled() const {
        Log names;
        for (const char* name :
             {"EditMenu", "Both", "App", "Nobody", "Cut", "Copy", "Quit", "Undo", "Line", "Sub", "Deep"})
            if (Item(name).Enabled) names.emplace_back(name);
        return names;
    }
};

TEST_F(MenuTest, ItemsAreEnabledByWhoCanBeReached) {
    App.EnableMenuItems();
    EXPECT_EQ(Enabled(), (Log{"EditMenu", "Both", "App", "Quit", "Sub"}));

    Program.Window->OnRefresh = [this] {
        Item("Undo").Enabled = true;
        App.EnableMenuItems();  // does not start over
    };
    Program.Window->Show();
    Field.SetFocus();
    App.EnableMenuItems();
    EXPECT_EQ(Enabled(), (Log{"EditMenu", "Both", "App", "Cut", "Copy", "Quit", "Undo", "Sub", "Deep"}));
    Field.ReadOnly = true;
    App.EnableMenuItems();
    EXPECT_FALSE(Item("Cut").Enabled);
    EXPECT_TRUE(Item("Copy").Enabled);
    Field.SetEnabled(false);
    Program.Window->OnRefresh = nullptr;
    App.EnableMenuItems();
    EXPECT_FALSE(Item("Copy").Enabled || Item("Undo").Enabled);
}

TEST_F(MenuTest, ChoiceGoesToTheWindowThenToTheApplication) {
    const auto choose = [this](StringView name) {
        const Application::Chosen chosen = App.Choose(Item(name));
        return std::pair(chosen.Enabled, chosen.Handled);
    };
    const std::pair done(true, true), inVain(true, false), disabled(false, false);
    EXPECT_EQ(choose("Both"), done);
    Program.Window->Show();
    EXPECT_EQ(choose("Both"), done);
    EXPECT_EQ(choose("Deep"), done);
    EXPECT_EQ(choose("App"), inVain);
    EXPECT_EQ(choose("Undo"), disabled);
    EXPECT_EQ(choose("Line"), disabled);
    EXPECT_EQ(choose("Cut"), disabled);
    Program.Window->AddMenuHandler("Both", Handler("window passes", false));
    EXPECT_EQ(choose("Both"), done);
    EXPECT_EQ(Ran, (Log{"app both", "window both", "deep", "app", "window passes", "app both"}));

    Field.SetFocus();
    EXPECT_EQ(choose("Cut"), done);
    EXPECT_EQ(Program.Backend.Edits, (std::vector{EditCommand::Cut}));
    EXPECT_EQ(choose("Quit"), done);
    EXPECT_TRUE(App.Ended());
    EXPECT_FALSE(Program.Window->IsOpen());
}

TEST_F(MenuTest, GeneratedItemRunsAlthoughTheRefreshReplacesIt) {
    struct Generated : MenuItem {
        Log* Target;
        Generated(Log& target, String text) : MenuItem("", std::move(text)), Target(&target) {}
        bool Event_Action() override {
            Target->push_back(Text());
            return true;
        }
        [[nodiscard]] bool HasAction() const override { return true; }
    };
    MenuItem& scripts = App.MenuBar->Append(std::make_unique<MenuItem>("Scripts", "Scripts"));
    Program.Window->OnRefresh = [&] {
        while (scripts.Count() > 0)
            scripts.Remove(0);
        scripts.Append(std::make_unique<Generated>(Ran, "Usable"));
        scripts.Append(std::make_unique<Generated>(Ran, "Unusable")).Enabled = false;
    };
    Program.Window->Show();
    App.EnableMenuItems();
    EXPECT_TRUE(App.Choose(scripts.Item(0)).Handled);
    EXPECT_FALSE(App.Choose(scripts.Item(1)).Enabled);
    EXPECT_EQ(Ran, (Log{"Usable"}));
    EXPECT_EQ(App.MenuBar->FindByName(""), nullptr);
    EXPECT_EQ(App.MenuBar->FindByName("scripts"), nullptr);
    EXPECT_THROW(scripts.Remove(2), OutOfBoundsException);
}

TEST(Application, FailureOfAHandlerIsShownAndTheProgramGoesOn) {
    TestProgram program;
    TestWindow& window = *program.Window;
    window.OnKey = [] {
        throw KeyNotFoundException("It is not there.");
    };
    // The failure comes while the loop of a modal window runs inside another operation, which has to go on.
    bool wentOn = false;
    program.Backend.WhileModal = [](Window& modal) {
        modal.UserKeyDown("x");
    };
    program.App.Perform([&] {
        program.App.ShowModal(window);
        wentOn = true;
    });
    EXPECT_TRUE(wentOn);
    EXPECT_EQ(program.Backend.Messages,
              (Log{"The operation failed: KeyNotFoundException. It is not there."}));
    EXPECT_EQ(program.App.TakeUnhandled(), "KeyNotFoundException");
    EXPECT_EQ(program.App.TakeUnhandled(), "");
    window.OnKey = [] {
        throw std::bad_alloc();
    };
    window.UserKeyDown("x");
    EXPECT_EQ(program.App.TakeUnhandled(), "RuntimeException");
}

TEST(Application, QuitStopsAtTheFirstRefusal) {
    TestProgram program;
    const auto front = std::make_shared<TestWindow>(program.App);
    const auto back = program.Window;
    const auto middle = std::make_shared<TestWindow>(program.App);
    for (const auto& window : {back, middle, front})
        window->Show();
    middle->Refuses = true;
    EXPECT_FALSE(program.App.Quit());
    EXPECT_FALSE(program.App.Ended() || front->IsOpen());
    EXPECT_TRUE(middle->IsOpen() && back->IsOpen());
    EXPECT_EQ(back->Log, (Log{"Open"}));
    middle->Refuses = false;
    EXPECT_TRUE(program.App.Quit());
    EXPECT_EQ(back->Log, (Log{"Open", "Quitting?", "Close"}));
}

TEST(Application, StartOpensEachFileOnItsOwn) {
    struct Program : Application {
        using Application::Application;
        Log Seen;
        void Event_Open() override { Seen.emplace_back("open"); }
        void Event_NewDocument() override { Seen.emplace_back("new"); }
        void Event_OpenDocument(const std::shared_ptr<FolderItem>& item) override {
            Seen.push_back(item->Name());
            if (item->Name() == "bad") throw IOException();
        }
        bool Event_HandleAppleEvent(StringView eventClass, StringView eventID) override {
            return eventClass == "aevt" && eventID == "rapp";
        }
    };
    FakeBackend backend;
    Program app(backend);
    app.Start({std::make_shared<FolderItem>("/tmp/bad"), std::make_shared<FolderItem>("/tmp/good")});
    EXPECT_EQ(app.Seen, (Log{"open", "bad", "good"}));
    EXPECT_EQ(app.TakeUnhandled(), "IOException");
    app.Seen.clear();
    app.Start({});
    EXPECT_EQ(app.Seen, (Log{"open", "new"}));
    EXPECT_TRUE(app.Reopen());
}

}  // namespace
}  // namespace sorbel
