#include <optional>
#include <random>
#include <sstream>

#include "editing/InternalChange.h"
#include "editing/WindowUnderTest.h"
#include "editing/changes/ImportChange.h"
#include "editing/changes/StringSetChange.h"
#include "interchange/DelimitedText.h"
#include "platform/Exceptions.h"
#include "support/BlindGraphics.h"

namespace sorbel {
namespace {

/// The reference: the same as ImportChange without a batch, so that the window reacts to each change in full.
class OneByOne : public Action {
  public:
    explicit OneByOne(std::unique_ptr<ImportChange> import) : mImport(std::move(import)) {}

  protected:
    void Execute() override {
        for (const auto& change : mImport->Changes)
            change->Perform();
        auto& history = mImport->StringSet->History;
        history.insert(history.end(), mImport->Histories.begin(), mImport->Histories.end());
    }
    void Unexecute() override {
        for (const auto& change : mImport->Changes)
            change->Undo();
        for (const auto& snapshot : mImport->Histories)
            std::erase(mImport->StringSet->History, snapshot);
    }

  private:
    std::unique_ptr<ImportChange> mImport;
};

class Failing : public Action {
    void Execute() override { throw OutOfBoundsException(); }
    void Unexecute() override { throw OutOfBoundsException(); }
};

/// A window whose imports are batched or not.
class Subject {
  public:
    Subject(LocalizedStringSet& document, bool batched) : mTest(document), mBatched(batched) {}

    [[nodiscard]] MainWindow& Window() const { return mWindow; }
    void Perform(std::unique_ptr<ImportChange> import) {
        if (mBatched)
            mWindow.undoManager->Add(std::move(import), true);
        else
            mWindow.undoManager->Add(std::make_unique<OneByOne>(std::move(import)), true);
    }

    /// Everything that can be seen of the window.
    String Seen() {
        mSeen.clear();
        const Listbox& list = mWindow.ListBox1;
        for (int64_t row = 0; row < list.ListCount(); ++row) {
            Note("row", list.TextTag(row).View(), list.NumberTag(row), list.Cell(row), list.Depth(row),
                 list.Expanded(row), list.RowPicture(row) != nullptr);
        }
        Note("list", list.ListIndex(), list.ScrollPosition());
        for (const TextArea* area : {&mWindow.DefaultValueFieldLong, &mWindow.HistoryDefaultValueFieldLong,
                                     &mWindow.LocalizedValueField})
            Note("pane", area->Text(), area->Enabled(), area->Visible(), area->Top(), area->Height());
        Note("labels", mWindow.NameField.Text(), mWindow.NameField.Italic(),
             mWindow.HistoryDefaultValueLabel.Text(), mWindow.HistoryDefaultValueLabel.Visible());
        const PopupMenu& popup = mWindow.HistoryFilter;
        for (int64_t row = 0; row < popup.ListCount(); ++row)
            Note("version", popup.RowText(row));
        Note("popup", popup.ListIndex(), popup.Enabled(), mWindow.ActiveHistory != nullptr);
        for (const bool shown : mWindow.HistoryFilterShouldShow)
            mSeen += shown ? "+" : "-";
        Note("dirty", mWindow.IsDirty, mWindow.ContentsChanged(), mWindow.undoManager->UndoStack().size(),
             mWindow.undoManager->RedoStack().size(), mWindow.IsInternalChange);
        Note("failure", mTest.App.TakeUnhandled(), mTest.Desktop.MenuChanges);
        return mSeen + ToDelimitedText(*mWindow.StringSet);
    }

  protected:
    WindowUnderTest mTest;
    MainWindow& mWindow = *mTest.Window;

  private:
    template <typename... Values>
    void Note(const Values&... values) {
        std::ostringstream line;
        ((line << values << '|'), ...);
        mSeen += line.str() + "\n";
    }

    bool mBatched;
    String mSeen;
};

/// One window, walked through random steps with imports among them. What a step does depends on the seed
/// alone, so that a second walk with the other sort of import can be compared with it.
class BatchWalk : public Subject {
  public:
    BatchWalk(unsigned seed, bool batched) : BatchWalk(std::mt19937(seed), batched) {}

    String Step() {
        switch (Pick(14)) {
            case 0:
                mWindow.SearchField.UserSetText(Terms[Pick(std::size(Terms))]);
                return "search";
            case 1:
                mTest.Choose("LocalizationOnlyShowNonlocalizedStrings");
                return "reduce";
            case 2:
                mWindow.HistoryFilter.UserChoose(static_cast<int64_t>(Pick(4)));
                return "version";
            case 3:
                mWindow.ListBox1.UserClick(Row(), 3, 3);
                return "click";
            case 4:
                mWindow.ListBox1.UserSelect(Row());
                return "select";
            case 5:
            case 6:
                for (int64_t row = mWindow.ListBox1.ListCount() - 1; row >= 0; --row)
                    if (Pick(2)) mWindow.ListBox1.UserExpand(row, true);
                return "expand";
            case 7:
                Paint();
                return "paint";
            case 8:
                mTest.Choose("EditUndo");
                return "undo";
            case 9:
                mTest.Choose("EditRedo");
                return "redo";
            case 10:
                mTest.Choose("FileSave");
                return "save";
            case 11:
                mWindow.LocalizedValueField.UserSetText(AnyText());
                return "type";
            default:
                Import();
                return "import";
        }
    }

  private:
    BatchWalk(std::mt19937 random, bool batched) : Subject(*MakeDocument(random), batched), mRandom(random) {}

    static constexpr const char* Texts[] = {"", "", "Datei", "OK", "file"};
    static constexpr const char* Terms[] = {"", "", "file", "D", "zzz"};

    size_t Pick(size_t below) { return mRandom() % below; }
    int64_t Row() {
        return static_cast<int64_t>(Pick(static_cast<size_t>(mWindow.ListBox1.ListCount()) + 1)) - 1;
    }
    static const char* AnyText(std::mt19937& random) { return Texts[random() % std::size(Texts)]; }
    const char* AnyText() { return AnyText(mRandom); }
    static String Identifier(size_t number) { return (number % 3 ? "k" : "kFile") + std::to_string(number); }

    static std::unique_ptr<LocalizedStringSet> MakeDocument(std::mt19937& random) {
        auto document = std::make_unique<LocalizedStringSet>();
        for (size_t number = 0; number < 8; ++number) {
            document->AddEntry(static_cast<int64_t>(random() % 3), Identifier(number), AnyText(random),
                               AnyText(random));
            if (random() % 2)
                document->AddEntry(PlatformLinux, Identifier(number), AnyText(random), AnyText(random));
            if (number == 2 || number == 5) {
                document->History.push_back(document->Clone());
                document->History.back()->DateGenerated->SetSQLDateTime("2001-01-0" + std::to_string(number) +
                                                                        " 10:00:00");
            }
        }
        document->DateGenerated->SetSQLDateTime("2002-01-01 10:00:00");
        return document;
    }

    /// Some strings more than once, some platforms and identifiers new, some changes failing.
    void Import() {
        auto change = std::make_unique<ImportChange>();
        change->StringSet = mWindow.StringSet;
        if (Pick(2)) change->Histories.push_back(mWindow.StringSet->Clone());
        const size_t failing = Pick(16);
        for (size_t count = Pick(12); count > 0; --count) {
            change->Changes.push_back(std::make_unique<StringSetChange>(
                mWindow.StringSet, Identifier(Pick(9)), static_cast<int64_t>(Pick(4)), AnyText(),
                Pick(4) ? "" : AnyText()));
            if (count == failing) change->Changes.push_back(std::make_unique<Failing>());
        }
        mTest.Time.Advance(100);
        mTest.App.Perform([&] {
            std::optional<InternalChange> guard;
            if (Pick(2)) guard.emplace(mWindow.IsInternalChange);
            Perform(std::move(change));
        });
    }

    void Paint() {
        BlindGraphics g;
        for (int64_t row = 0; row < mWindow.ListBox1.ListCount(); ++row)
            mWindow.ListBox1.PaintCell(g, row, 0, 0);
    }

    std::mt19937 mRandom;
};

/// A window with a walk of its own at a time, since the desktop's clock and colours are the program's.
std::vector<String> SeenOnAWalk(unsigned seed, bool batched) {
    BatchWalk walk(seed, batched);
    std::vector<String> seen{walk.Seen()};
    for (int step = 0; step < 150; ++step) {
        const String name = walk.Step();
        seen.push_back(name + "\n" + walk.Seen());
    }
    return seen;
}

TEST(Batch, LeavesWhatEachChangeByItselfWouldLeave) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        const std::vector<String> batched = SeenOnAWalk(seed, true), single = SeenOnAWalk(seed, false);
        for (size_t step = 0; step < batched.size(); ++step)
            ASSERT_EQ(batched[step], single[step]) << "seed " << seed << ", step " << step;
    }
}

struct Row {
    const char* Identifier;
    int64_t Platform;
    const char *Default, *Translated;
};

std::unique_ptr<ImportChange> ImportOf(const MainWindow& window, const std::vector<Row>& rows) {
    auto change = std::make_unique<ImportChange>();
    change->StringSet = window.StringSet;
    for (const Row& row : rows)
        change->Changes.push_back(std::make_unique<StringSetChange>(
            window.StringSet, row.Identifier, row.Platform, row.Translated, row.Default));
    return change;
}

void FillVersions(LocalizedStringSet& document) {
    document.AddEntry(PlatformAny, "first", "F", "");
    document.AddEntry(PlatformAny, "k", "A", "");
    document.AddEntry(PlatformMacOS, "k", "M", "");
    document.AddEntry(PlatformAny, "last", "L", "");
    document.History.push_back(document.Clone());
    document.AddEntry(PlatformAny, "first", "new", "");
    document.AddEntry(PlatformAny, "k", "new", "");
}

TEST(Batch, ClosesAFolderThatWasHiddenMeanwhile) {
    String seen[2];
    for (const bool batched : {false, true}) {
        LocalizedStringSet document;
        FillVersions(document);
        Subject subject(document, batched);
        subject.Window().HistoryFilter.UserChoose(1);
        ASSERT_EQ(subject.Window().ListBox1.ListCount(), 2);
        subject.Window().ListBox1.UserExpand(1, true);
        subject.Perform(ImportOf(subject.Window(), {{"first", PlatformAny, "", "x"},
                                                    {"k", PlatformAny, "A", "y"},
                                                    {"k", PlatformMacOS, "new", "z"}}));
        seen[batched] = subject.Seen();
    }
    EXPECT_EQ(seen[true], seen[false]);
}

TEST(Batch, EmptiesThePanesForASelectionThatCameAndWent) {
    const std::vector<Row> cases[] = {
        {{"x", PlatformAny, "", "1"}, {"k", PlatformAny, "", "x"}, {"k", PlatformAny, "", "2"}},
        {{"x", PlatformAny, "", "1"}, {"k", PlatformAny, "", "2"}, {"x", PlatformAny, "", "3"}},
        {{"a", PlatformAny, "", "x"}, {"a", PlatformAny, "", "2"}, {"a", PlatformAny, "", "x"}}};
    for (const char* first : {"x", "a"}) {
        for (const std::vector<Row>& rows : cases) {
            String seen[2];
            for (const bool batched : {false, true}) {
                LocalizedStringSet document;
                for (const char* identifier : {first, "k", "last"})
                    document.AddEntry(PlatformAny, identifier, "", identifier == first ? "x" : "");
                Subject subject(document, batched);
                subject.Window().SearchField.UserSetText("x");
                subject.Perform(ImportOf(subject.Window(), rows));
                seen[batched] = subject.Seen();
            }
            EXPECT_EQ(seen[true], seen[false]) << first;
        }
    }
}

}  // namespace
}  // namespace sorbel
