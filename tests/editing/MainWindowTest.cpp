#include "editing/WindowUnderTest.h"
#include "platform/SpecialFolder.h"
#include "shell/FileTypes1.h"

namespace sorbel {
namespace {

/// Keeps what a paint chose. A character is 7 points wide, so that widths can be counted.
class RecordingGraphics : public Graphics {
  public:
    struct Drawn {
        String Icon;
        int X, Y;
        Color Tint;
        bool operator==(const Drawn&) const = default;
    };
    std::vector<Drawn> Pictures;

    [[nodiscard]] int Width() const override { return 200; }
    [[nodiscard]] int Height() const override { return 20; }
    [[nodiscard]] double StringWidth(StringView text) const override {
        return static_cast<double>(Len(text)) * 7.5;
    }
    void DrawPicture(const Picture& picture, int x, int y) override {
        Pictures.push_back({picture.IconName, x, y, picture.Tint});
    }
    void DrawLine(int, int, int, int) override {}
    void DrawRect(int, int, int, int) override {}
    void FillRect(int, int, int, int) override {}
};

constexpr Color Text{0x111111}, Grey{0x777777}, SelectedText{0xFEFEFE}, Faint{0xAAAAAA};

std::shared_ptr<LocalizedStringSet> Version(StringView date, StringView quitText) {
    auto set = std::make_shared<LocalizedStringSet>();
    set->DateGenerated->SetSQLDateTime(date);
    set->AddEntry(PlatformAny, "kQuit", quitText, "");
    set->AddEntry(PlatformAny, "kSave", "save", "");
    return set;
}

/// "kQuit" with a Windows value, "kSave" translated, "kNothing" without a text, and two earlier versions.
void FillDocument(LocalizedStringSet& set) {
    Date::SetLocale("en_US");
    set.Language = "de";
    set.AddEntry(PlatformAny, "kQuit", "Quit now", "Jetzt beenden");
    set.AddEntry(PlatformWindows, "kQuit", "E&xit now", "");
    set.AddEntry(PlatformLinux, "kQuit", "Leave", "Verlassen");
    set.AddEntry(PlatformAny, "kSave", "Save", "Sichern");
    set.AddEntry(PlatformAny, "kNothing", "", "");
    set.History.push_back(Version("2005-03-01 10:00:00", "Quit now"));
    set.History.push_back(Version("2004-01-02 10:00:00", "Quit soon"));
}

class MainWindowTest : public testing::Test {
  protected:
    static LocalizedStringSet& Document() {
        static LocalizedStringSet set;
        if (set.Entries.Count() == 0) FillDocument(set);
        return set;
    }
    struct Painted {
        RecordingGraphics G;
        bool Dealt;
    };
    Painted Paint(int64_t row) {
        Painted painted;
        painted.Dealt = Window.ListBox1.PaintCell(painted.G, row, 0, 0);
        return painted;
    }
    String FileBytes() { return String(ReadContents(*Test.File)->View()); }

    WindowUnderTest Test{Document()};
    MainWindow& Window = *Test.Window;
};

TEST_F(MainWindowTest, PaintsRowsFromTheirTags) {
    Window.ListBox1.UserExpand(0, true);
    const Painted folder = Paint(0);
    EXPECT_EQ(Window.ListBox1.Cell(0), "Jetzt beenden");
    EXPECT_EQ(folder.G.ForeColor, Text);
    EXPECT_EQ(folder.G.Pictures, (std::vector<RecordingGraphics::Drawn>{{"OS-Windows", 160, 0, Faint},
                                                                        {"OS-Linux", 176, 0, Text}}));
    const Painted mac = Paint(1);
    EXPECT_EQ(Window.ListBox1.Cell(1), "(No platform-specific value)");
    EXPECT_EQ(mac.G.ForeColor, Grey);
    const Painted windows = Paint(2);
    EXPECT_EQ(Window.ListBox1.Cell(2), "E&xit now");
    EXPECT_TRUE(windows.G.Bold);
    EXPECT_EQ(windows.G.ForeColor, Grey);
    EXPECT_TRUE(windows.G.Pictures.empty()) << "the platform's own icon is the row's picture";
    const Painted nameless = Paint(5);
    EXPECT_EQ(Window.ListBox1.Cell(5), "(kNothing)");
    EXPECT_TRUE(nameless.G.Italic);
    EXPECT_FALSE(nameless.G.ForeColorSet);

    // Selection changes the colour of the text, but not of a platform without a value.
    Window.ListBox1.UserSelect(2);
    EXPECT_EQ(Paint(2).G.ForeColor, SelectedText);
    Window.ListBox1.UserSelect(1);
    EXPECT_EQ(Paint(1).G.ForeColor, Grey);
}

TEST_F(MainWindowTest, TellsWhatIconsStandForAndWhatIsSearched) {
    const Listbox& list = Window.ListBox1;
    Window.ListBox1.UserExpand(0, true);
    EXPECT_EQ(list.CellTip(0, 160, 200), "Windows: not translated");
    EXPECT_EQ(list.CellTip(0, 191, 200), "Linux: translated");
    EXPECT_EQ(list.CellTip(0, 159, 200), "") << "no value for the Mac, so no icon";
    EXPECT_EQ(list.CellTip(0, 192, 200), "");
    EXPECT_EQ(list.CellTip(2, 160, 200), "") << "its icon is the row's picture";
    EXPECT_EQ(list.PictureTip(2), "Windows");

    EXPECT_EQ(Window.SearchOptionsMenu.Tip(), "Searched: Name, Default Value, Translated Value");
    Test.Desktop.MenuChoices = {"Name", "Translated Value", "Default Value"};
    Window.SearchOptionsMenu.UserMouseDown(1, 1);
    Window.SearchOptionsMenu.UserMouseDown(1, 1);
    EXPECT_EQ(Window.SearchOptionsMenu.Tip(), "Searched: Default Value");
    Window.SearchOptionsMenu.UserMouseDown(1, 1);
    EXPECT_EQ(Window.SearchOptionsMenu.Tip(), "Nothing is searched");
}

TEST_F(MainWindowTest, ShowsAndReopensTheNoSelectionState) {
    EXPECT_EQ(Window.NameField.Text(), "No Selection");
    EXPECT_TRUE(Window.DefaultValueFieldLong.Enabled());
    EXPECT_EQ(Window.DefaultValueFieldLong.Text(), "");
    Window.ListBox1.UserSelect(1);
    EXPECT_EQ(Window.NameField.Text(), "kSave");
    EXPECT_FALSE(Window.NameField.Italic());
    Window.ListBox1.UserClick(-1, 0, 0);
    EXPECT_EQ(Window.NameField.Text(), "(No Selection)");
    EXPECT_EQ(Window.NameField.TextColor(), Grey);
    EXPECT_EQ(Window.DefaultValueFieldLong.Text(), "(No selection)");
    EXPECT_FALSE(Window.DefaultValueFieldLong.Enabled());
    EXPECT_EQ(Window.TranslationText.Text(), "German &Translation:");
}

TEST_F(MainWindowTest, ASearchWithoutMatchesAndWithoutAClickShowsNoSelection) {
    // The empty text last clicked equals the text of the row that is not there, so "none" is selected anew.
    Window.SearchField.UserSetText("zzz");
    EXPECT_EQ(Window.ListBox1.ListCount(), 0);
    EXPECT_EQ(Window.NameField.Text(), "(No Selection)");
}

TEST_F(MainWindowTest, ChoosingAVersionReducesTheListAndComparesWords) {
    ASSERT_EQ(Window.HistoryFilter.ListCount(), 3);
    EXPECT_EQ(Window.HistoryFilter.RowText(1), "January 2, 2004");
    EXPECT_EQ(Window.HistoryFilter.RowText(2), "March 1, 2005");
    EXPECT_TRUE(Window.HistoryFilter.Enabled());

    Window.HistoryFilter.UserChoose(1);
    EXPECT_EQ(Window.HistoryDefaultValueLabel.Text(), "January 2, 2004 Value:");
    EXPECT_TRUE(Window.HistoryDefaultValueFieldLong.Visible());
    ASSERT_EQ(Window.ListBox1.ListCount(), 2) << "kSave differs in letter case only";
    EXPECT_EQ(Window.ListBox1.TextTag(1).View(), "kNothing") << "new since then";

    Window.ListBox1.UserSelect(0);
    const auto& now = Window.DefaultValueFieldLong.Runs();
    ASSERT_EQ(now.size(), 2u);
    EXPECT_EQ(now[0].Length, String("Quit ").size());
    EXPECT_EQ(now[0].Color, Text);
    EXPECT_EQ(now[1].Color, Color{0x00AA00});
    EXPECT_EQ(Window.HistoryDefaultValueFieldLong.Text(), "Quit soon");
    EXPECT_EQ(Window.HistoryDefaultValueFieldLong.Runs()[1].Color, Color{0xAA0000});

    // A chosen version survives undo, and the list stays reduced.
    Window.LocalizedValueField.UserSetText("Beenden");
    Test.Choose("EditUndo");
    EXPECT_EQ(Window.HistoryFilter.ListIndex(), 1);
    EXPECT_EQ(Window.ListBox1.ListCount(), 2);

    Window.HistoryFilter.UserChoose(0);
    EXPECT_FALSE(Window.HistoryDefaultValueFieldLong.Visible());
    EXPECT_EQ(Window.ListBox1.ListCount(), 3);
    EXPECT_EQ(Window.ActiveHistory, nullptr);
}

TEST_F(MainWindowTest, SplittersMoveTheirNeighboursAndStopAtTheirLimits) {
    Window.SimpleSplitter1.UserMouseDown(4, 10);
    Window.SimpleSplitter1.UserMouseDrag(-36, 10);
    EXPECT_EQ(Window.SimpleSplitter1.Left(), 322);
    EXPECT_EQ(Window.ListBox1.Width(), 300);
    EXPECT_EQ(Window.LocalizedValueField.Place(), (Bounds{332, 204, 288, 256}));
    EXPECT_EQ(Window.SearchOptionsMenu.Left(), 298);
    Window.SimpleSplitter1.UserMouseDrag(-999, 10);
    EXPECT_EQ(Window.SimpleSplitter1.Left(), 104);
    Window.SimpleSplitter1.UserMouseUp(0, 0);
    Window.UserResize({800, 600}, true);
    EXPECT_EQ(Window.ListBox1.Height(), 509);
    EXPECT_EQ(Window.LocalizedValueField.Height(), 376);
    EXPECT_EQ(Window.SimpleSplitter1.Left(), 104);
}

TEST_F(MainWindowTest, MnemonicsMoveTheFocus) {
    Window.StaticText3.UserAccelerator();
    EXPECT_EQ(Window.Focus(), &Window.SearchField);
    Window.DefaultValueLabel.UserAccelerator();
    EXPECT_EQ(Window.Focus(), &Window.DefaultValueFieldLong);
    Window.TranslationText.UserAccelerator();
    EXPECT_EQ(Window.Focus(), &Window.TranslationText);
}

TEST_F(MainWindowTest, SavesInPlaceAndFollowsTheSavePoint) {
    const String before = FileBytes();
    EXPECT_FALSE(Test.Choose("FileSave")) << "nothing to save";
    Window.ListBox1.UserSelect(1);
    Window.LocalizedValueField.UserSetText("Speichern");
    EXPECT_TRUE(Window.ContentsChanged());
    EXPECT_EQ(FileBytes(), before);
    EXPECT_TRUE(Test.Choose("FileSave"));
    EXPECT_FALSE(Window.ContentsChanged());
    LocalizedStringSet saved;
    ASSERT_TRUE(saved.ReadFile(*Test.File));
    EXPECT_EQ(saved.Entries.Find("kSave")->Find(PlatformAny)->Localized.View(), "Speichern");
    EXPECT_EQ(saved.History.size(), 2u);
    Test.Choose("EditUndo");
    EXPECT_TRUE(Window.ContentsChanged());
}

TEST_F(MainWindowTest, AsksBeforeClosingWithChanges) {
    const String before = FileBytes();
    Window.ListBox1.UserSelect(1);
    Window.LocalizedValueField.UserSetText("Speichern");
    Test.Desktop.Buttons = {FakeBackend::Button::Cancel};
    EXPECT_FALSE(Window.UserClose());
    EXPECT_EQ(Test.Desktop.MessageDialogs.back().Message, "Do you want to save changes?");
    EXPECT_TRUE(Window.IsDirty);

    Test.Desktop.Buttons = {FakeBackend::Button::Alternate};
    EXPECT_EQ(Notifications::Observers().Count(), 1);
    EXPECT_TRUE(Window.UserClose());
    EXPECT_EQ(FileBytes(), before);
    EXPECT_EQ(Notifications::Observers().Count(), 0) << "a closed window listens no more";
}

TEST_F(MainWindowTest, SavesOnTheWayOutWhenAsked) {
    Window.ListBox1.UserSelect(1);
    Window.LocalizedValueField.UserSetText("Speichern");
    Test.Desktop.Buttons = {FakeBackend::Button::Action};
    EXPECT_TRUE(Test.App.Quit());
    LocalizedStringSet saved;
    ASSERT_TRUE(saved.ReadFile(*Test.File));
    EXPECT_EQ(saved.Entries.Find("kSave")->Find(PlatformAny)->Localized.View(), "Speichern");
}

TEST_F(MainWindowTest, AFileThatCannotBeReadLeavesNothingBehind) {
    const auto listeners = Notifications::Observers().Count();
    const auto f = std::make_shared<FolderItem>(Test.Folder / "broken.nvl");
    WriteContents(*f, "nvlocaleabcd");
    EXPECT_THROW(MainWindow::Create(Test.App, f), RuntimeException);
    EXPECT_EQ(Notifications::Observers().Count(), listeners);
    EXPECT_EQ(Test.App.WindowCount(), 1);
}

TEST_F(MainWindowTest, ShowsLongWorkAndItsEndAlsoWhenItFails) {
    int& begun = Test.Desktop.BusyTimes;
    const auto ended = [&] {
        return std::exchange(begun, 0) > 0 && Test.Desktop.Busy == 0;
    };
    EXPECT_TRUE(ended()) << "opening";
    const FolderItem broken(Test.Folder / "broken.nvl"), shortLine(Test.Folder / "short.txt");
    WriteContents(broken, "nvlocaleabcd");
    EXPECT_THROW(MainWindow::Create(Test.App, std::make_shared<FolderItem>(broken)), RuntimeException);
    EXPECT_TRUE(ended()) << "opening in vain";

    _InitFileTypes();
    WriteContents(shortLine, "kSave\tAny\tSave\n");
    Test.Desktop.Files = {shortLine.NativePath()};
    Test.App.MenuBar->Append(std::make_unique<MenuItem>("FileImportExistingFile", "Import"));
    EXPECT_TRUE(Test.Choose("FileImportExistingFile"));
    EXPECT_EQ(Test.App.TakeUnhandled(), "OutOfBoundsException");
    EXPECT_TRUE(ended()) << "an import that failed";

    Window.ListBox1.UserSelect(1);
    Window.LocalizedValueField.UserSetText("Speichern");
    Window.SearchField.UserSetText("spei");
    Test.Choose("EditUndo");
    Test.Choose("EditRedo");
    EXPECT_EQ(begun, 0) << "little work would only flicker";
    Test.Choose("FileSave");
    EXPECT_TRUE(ended()) << "saving";

    for (int number = 0; number < 100000; ++number)
        Window.StringSet->AddEntry(PlatformAny, "k" + std::to_string(number), "", "");
    Window.SearchField.UserSetText("spe");
    EXPECT_TRUE(ended()) << "a search in many strings";
    Window.HistoryFilter.UserChoose(1);
    EXPECT_TRUE(ended()) << "a version of many strings";
    Test.Choose("EditUndo");
    EXPECT_TRUE(ended()) << "undo in many strings";
}

TEST_F(MainWindowTest, ShowsTheScriptsAsTheyAreAtEachCommand) {
    const TemporaryFolder documents;
    const FolderItem scripts(documents / "Kestrum/Sorbel/Scripts");
    MenuItem& menu = Test.App.MenuBar->Append(std::make_unique<MenuItem>("ScriptsMenu", "Scripts"));
    const auto change = [&] {
        Window.ListBox1.UserSelect(1);
        Test.Time.Advance(1000);
        Window.LocalizedValueField.UserSetText(Window.LocalizedValueField.Text() + "x");
    };
    SpecialFolder::SetDocuments(documents.Path());
    change();
    Test.Choose("EditUndo");
    EXPECT_EQ(menu.Count(), 1u);
    WriteContents(*scripts.Child("a.sorbel_script"), "");
    Test.Choose("EditRedo");
    EXPECT_EQ(menu.Count(), 3u);
    Test.App.Perform([&] {
        WriteContents(*scripts.Child("b.sorbel_script"), "");
        Test.App.EnableMenuItems();
        EXPECT_EQ(menu.Count(), 4u);
    });
    // Where no folder can be made, every refresh adds to the menu, and undo ends with a second one.
    WriteContents(FolderItem(documents / "file"), "");
    SpecialFolder::SetDocuments(documents / "file");
    Test.Choose("EditUndo");
    EXPECT_EQ(menu.Count(), 8u);
}

TEST_F(MainWindowTest, TruncatesTextToAWidth) {
    RecordingGraphics g;
    bool truncated = true;
    EXPECT_EQ(MainWindow::TruncateString(g, "Übung", 37, truncated), "Übung");
    EXPECT_FALSE(truncated);
    EXPECT_EQ(MainWindow::TruncateString(g, "Übungen", 22, truncated), "")
        << "room for the dots alone is no room";
    EXPECT_FALSE(truncated);
    EXPECT_EQ(MainWindow::TruncateString(g, "Übungen", 51, truncated), "Übu...");
    EXPECT_TRUE(truncated);
    // Three characters and the dots fill 44 exactly, which shrinking does not accept.
    EXPECT_EQ(MainWindow::TruncateString(g, "Übungen", 44), "Üb...");
}

}  // namespace
}  // namespace sorbel
