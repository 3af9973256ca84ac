// Thousands of random user operations on a document window, compared after each with a small model of the
// list, the panes, undo and the dirty mark that does everything the plain way.
#include <algorithm>
#include <random>

#include "editing/WindowUnderTest.h"
#include "support/BlindGraphics.h"

namespace sorbel {
namespace {

struct Value {
    String Default, Translated;
};
using Platforms = std::vector<std::pair<int64_t, Value>>;  // in the order in which they were added

Value* Find(Platforms& platforms, int64_t platform) {
    for (auto& [code, value] : platforms)
        if (code == platform) return &value;
    return nullptr;
}

struct ModelRow {
    String Identifier;
    int64_t Platform = 0;
    bool Folder = false;
    String Text{};
    bool Open = false;
};

struct Change {
    String Identifier;
    int64_t Platform;
    String Default, Old, New;
    int64_t Time;
};

/// The document and window as a translator understands them. Identifiers are told apart by letter case here;
/// the test has none that differ in it only.
class Model {
  public:
    std::vector<std::pair<String, Platforms>> Entries;
    std::vector<ModelRow> Rows;
    int64_t Selected = -1;
    std::vector<Change> Undone, Done;
    int64_t SavePoint = -1;
    String Search, LastClicked;
    bool Name = true, Default = true, Translated = true, OnlyOpen = false;
    String Pane, Field, NameText = "No Selection";
    bool FieldEnabled = false;

    [[nodiscard]] bool Dirty() const { return static_cast<int64_t>(Done.size()) - 1 != SavePoint; }

    void Select(int64_t row) {
        Selected = row >= 0 && row < Count() ? row : -1;
        ShowPanes();
    }
    void Click(int64_t row) {
        LastClicked = row < 0 ? String() : Rows[static_cast<size_t>(row)].Text;
        if (OnlyOpen) Rebuild();
        if (row >= 0 && row < Count())
            Select(row);
        else if (Selected >= 0)
            Select(-1);
    }
    void Expand(int64_t row, bool open) {
        ModelRow& folder = Rows[static_cast<size_t>(row)];
        if (!folder.Folder || folder.Open == open) return;
        folder.Open = open;
        const auto below = Rows.begin() + row + 1;
        if (open) {
            const String identifier = folder.Identifier;
            Rows.insert(below, {{identifier, 1}, {identifier, 2}, {identifier, 3}});
            if (Selected > row) Selected += 3;
            return;
        }
        Rows.erase(below, below + 3);
        if (Selected > row + 3)
            Selected -= 3;
        else if (Selected > row)
            Select(row);
    }
    void Type(const String& text, int64_t now) {
        if (!FieldEnabled || text == Field) return;
        Field = text;
        const ModelRow& row = Rows[static_cast<size_t>(Selected)];
        Platforms& platforms = *EntryOf(row.Identifier);
        const Value* own = Find(platforms, row.Platform);
        const Value* any = Find(platforms, PlatformAny);
        Change change{row.Identifier,
                      row.Platform,
                      own ? own->Default : any ? any->Default : "",
                      own ? own->Translated : "",
                      text,
                      now};
        if (!Done.empty() && Done.back().Identifier == change.Identifier &&
            Done.back().Platform == change.Platform && now - Done.back().Time < 30) {
            Done.back().New = text;
            Done.back().Time = now;
        } else {
            Done.push_back(change);
            Undone.clear();
        }
        Store(change, text);
    }
    void Undo() { Move(Done, Undone, &Change::Old); }
    void Redo() { Move(Undone, Done, &Change::New); }

    void Rebuild() {
        const auto first = Search.find_first_not_of(' ');
        if (first == String::npos)
            ShowAll();
        else
            ShowMatches(Search.substr(first, Search.find_last_not_of(' ') - first + 1));
    }

    /// What the window paints: the text of each row, which stays with the row.
    void Paint() {
        for (ModelRow& row : Rows)
            row.Text = TextOf(row);
    }

  private:
    [[nodiscard]] int64_t Count() const { return static_cast<int64_t>(Rows.size()); }

    Platforms* EntryOf(const String& identifier) {
        for (auto& [known, platforms] : Entries)
            if (known == identifier) return &platforms;
        return nullptr;
    }
    void Store(const Change& change, const String& text) {
        Platforms& platforms = *EntryOf(change.Identifier);
        if (Value* own = Find(platforms, change.Platform))
            *own = {change.Default, text};
        else
            platforms.push_back({change.Platform, {change.Default, text}});
    }
    void Move(std::vector<Change>& from, std::vector<Change>& to, String Change::*value) {
        if (from.empty()) return;
        const Change change = from.back();
        from.pop_back();
        to.push_back(change);
        Store(change, change.*value);
        if (Selected >= 0 && Rows[static_cast<size_t>(Selected)].Identifier == change.Identifier) ShowPanes();
        Rebuild();  // the popup of versions is refilled, and with it the list
    }

    void DeleteRows() {
        Rows.clear();
        if (Selected >= 0) Select(-1);
    }
    void ShowAll() {
        std::vector<String> open;
        for (const ModelRow& row : Rows)
            if (row.Open) open.push_back(row.Identifier);
        DeleteRows();
        for (const auto& [identifier, platforms] : Entries) {
            const bool untranslated = std::ranges::any_of(
                platforms, [](const auto& item) { return item.second.Translated.empty(); });
            if (OnlyOpen && !untranslated) continue;
            Rows.push_back({identifier, 0, true});
            if (std::ranges::count(open, identifier)) Expand(Count() - 1, true);
        }
    }
    void ShowMatches(const String& term) {
        DeleteRows();
        const auto holds = [&](const String& text) {
            return Fold(text).find(Fold(term)) != String::npos;
        };
        for (const auto& [identifier, platforms] : Entries) {
            if (Name && holds(identifier)) {
                Rows.push_back({identifier, 0, true, identifier});
            } else {
                for (const auto& [platform, value] : platforms)
                    if ((Default && holds(value.Default)) || (Translated && holds(value.Translated)))
                        Rows.push_back({identifier, platform});
            }
            if ((Rows.empty() ? "" : Rows.back().Text) == LastClicked) Select(Count() - 1);
        }
    }
    void ShowPanes() {
        FieldEnabled = Selected >= 0;
        if (!FieldEnabled) {
            Pane = "(No selection)";
            Field = "";
            NameText = "(No Selection)";
            return;
        }
        const ModelRow& row = Rows[static_cast<size_t>(Selected)];
        Platforms& platforms = *EntryOf(row.Identifier);
        const Value* own = Find(platforms, row.Platform);
        const Value* any = Find(platforms, PlatformAny);
        Pane = own ? own->Default : any ? any->Default : "";
        Field = own ? own->Translated : "";
        NameText = row.Identifier;
    }
    String TextOf(const ModelRow& row) {
        Platforms& platforms = *EntryOf(row.Identifier);
        const Value* own = Find(platforms, row.Platform);
        const Value* any = Find(platforms, PlatformAny);
        if (row.Platform != 0 && !own) return "(No platform-specific value)";
        if (own && !own->Translated.empty()) return own->Translated;
        const String text = own ? own->Default : any ? any->Default : "";
        return text.empty() ? "(" + row.Identifier + ")" : text;
    }
};

class Walk {
  public:
    explicit Walk(unsigned seed) : mRandom(seed), mTest(*MakeDocument()) { mModel.Rebuild(); }

    void Step() {
        const auto row = static_cast<int64_t>(Pick(mModel.Rows.size() + 1)) - 1;
        Listbox& list = mTest.Window->ListBox1;
        switch (Pick(16)) {
            case 0:
            case 1:
                list.UserClick(row, 3, 3);
                mModel.Click(row);
                break;
            case 2:
                list.UserSelect(row);
                mModel.Select(row);
                break;
            case 3:
            case 4:
                if (row < 0) break;
                mOpening = Pick(4) > 0;
                list.UserExpand(row, mOpening);
                mModel.Expand(row, mOpening);
                break;
            case 5:
            case 6:
            case 7:
                Type(Texts[Pick(std::size(Texts))]);
                break;
            case 8:
                mTest.Time.Advance(static_cast<int64_t>(Pick(40)));
                break;
            case 9:
                if (mTest.Choose("EditUndo")) mModel.Undo();
                break;
            case 10:
                if (mTest.Choose("EditRedo")) mModel.Redo();
                break;
            case 11:
                Search(Terms[Pick(std::size(Terms))]);
                break;
            case 12:
                Paint();
                break;
            case 13:
                FlipScope();
                break;
            case 14:
                StepThroughRows();
                break;
            default:
                SaveOrReduce();
        }
    }

    void Compare() {
        const MainWindow& window = *mTest.Window;
        ASSERT_EQ(window.ListBox1.ListCount(), static_cast<int64_t>(mModel.Rows.size()));
        for (int64_t row = 0; row < window.ListBox1.ListCount(); ++row) {
            const ModelRow& expected = mModel.Rows[static_cast<size_t>(row)];
            ASSERT_EQ(window.ListBox1.TextTag(row).View(), expected.Identifier);
            ASSERT_EQ(window.ListBox1.NumberTag(row), expected.Platform);
            ASSERT_EQ(window.ListBox1.Cell(row), expected.Text);
            ASSERT_EQ(window.ListBox1.Expanded(row), expected.Open);
        }
        ASSERT_EQ(window.ListBox1.ListIndex(), mModel.Selected);
        ASSERT_EQ(window.DefaultValueFieldLong.Text(), mModel.Pane);
        ASSERT_EQ(window.LocalizedValueField.Text(), mModel.Field);
        ASSERT_EQ(window.LocalizedValueField.Enabled(), mModel.FieldEnabled);
        ASSERT_EQ(window.NameField.Text(), mModel.NameText);
        ASSERT_EQ(window.undoManager->UndoStack().size(), mModel.Done.size());
        ASSERT_EQ(window.undoManager->RedoStack().size(), mModel.Undone.size());
        ASSERT_EQ(window.IsDirty, mModel.Dirty());
        ASSERT_EQ(window.ContentsChanged(), mModel.Dirty());
        ASSERT_EQ(window.IsInternalChange, 0);
        ASSERT_EQ(mTest.App.TakeUnhandled(), "");
    }

    void CompareDocument() const {
        const EntryDictionary& entries = mTest.Window->StringSet->Entries;
        ASSERT_EQ(entries.Count(), static_cast<int64_t>(mModel.Entries.size()));
        for (const auto& [identifier, platforms] : mModel.Entries) {
            const PlatformTable* found = entries.Find(identifier);
            ASSERT_TRUE(found);
            ASSERT_EQ(found->Count(), static_cast<int64_t>(platforms.size()));
            for (size_t index = 0; index < platforms.size(); ++index) {
                const PlatformTable::Item& item = found->ItemAt(static_cast<int64_t>(index));
                ASSERT_EQ(item.Platform, platforms[index].first);
                ASSERT_EQ(item.Value.Original.View(), platforms[index].second.Default);
                ASSERT_EQ(item.Value.Localized.View(), platforms[index].second.Translated);
            }
        }
    }

  private:
    static constexpr const char* Texts[] = {"", "Datei", "OK", "Öffnen", "file", "x"};
    static constexpr const char* Terms[] = {"", " ", "file", "D", "ö", "zzz", " ok"};

    size_t Pick(size_t below) { return mRandom() % below; }

    /// Some strings of every kind, put into the model as well.
    std::unique_ptr<LocalizedStringSet> MakeDocument() {
        auto document = std::make_unique<LocalizedStringSet>();
        for (int number = 0; number < 12; ++number) {
            const String identifier = (number % 3 ? "k" : "kFile") + std::to_string(number);
            Platforms platforms;
            for (const int64_t platform : {2, 0, 1, 3}) {
                if (Pick(platform == 0 ? 5 : 3) == 0 || (platform != 0 && number % 2)) continue;
                const Value value{Texts[Pick(std::size(Texts))], Texts[Pick(std::size(Texts))]};
                platforms.push_back({platform, value});
                document->AddEntry(platform, identifier, value.Default, value.Translated);
            }
            if (!platforms.empty()) mModel.Entries.emplace_back(identifier, platforms);
        }
        return document;
    }
    void Type(const String& text) {
        mTest.Window->LocalizedValueField.UserSetText(text);
        mModel.Type(text, mTest.Time.Ticks());
    }
    void Search(const String& text) {
        mTest.Window->SearchField.UserSetText(text);
        if (mModel.Search == text) return;
        mModel.Search = text;
        mModel.Rebuild();
    }
    void Paint() {
        BlindGraphics g;
        for (int64_t row = 0; row < mTest.Window->ListBox1.ListCount(); ++row)
            mTest.Window->ListBox1.PaintCell(g, row, 0, 0);
        mModel.Paint();
    }
    void FlipScope() {
        static constexpr const char* captions[] = {"Name", "Default Value", "Translated Value"};
        bool* const scopes[] = {&mModel.Name, &mModel.Default, &mModel.Translated};
        const size_t scope = Pick(3);
        mTest.Desktop.MenuChoices.emplace_back(captions[scope]);
        mTest.Window->SearchOptionsMenu.UserMouseDown(1, 1);
        *scopes[scope] = !*scopes[scope];
        if (!mModel.Search.empty()) mModel.Rebuild();
    }
    void StepThroughRows() {
        if (Pick(2)) {
            mTest.Choose("LocalizationNextItem");
            if (mModel.Selected < static_cast<int64_t>(mModel.Rows.size()) - 1)
                mModel.Select(mModel.Selected + 1);
        } else {
            mTest.Choose("LocalizationPreviousSring");
            if (mModel.Selected > 0) mModel.Select(mModel.Selected - 1);
        }
    }
    void SaveOrReduce() {
        if (Pick(2)) {
            if (mTest.Choose("FileSave")) mModel.SavePoint = static_cast<int64_t>(mModel.Done.size()) - 1;
        } else {
            mTest.Choose("LocalizationOnlyShowNonlocalizedStrings");
            mModel.OnlyOpen = !mModel.OnlyOpen;
            mModel.Rebuild();
        }
    }

    std::mt19937 mRandom;
    Model mModel;
    WindowUnderTest mTest;
    bool mOpening = false;
};

TEST(MainWindow, AgreesWithAPlainModelOnRandomWalks) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        Walk walk(seed);
        for (int step = 0; step < 400; ++step) {
            walk.Step();
            walk.Compare();
            if (testing::Test::HasFatalFailure()) FAIL() << "seed " << seed << ", step " << step;
        }
        walk.CompareDocument();
    }
}

}  // namespace
}  // namespace sorbel
