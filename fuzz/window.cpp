// Steps of a user in a document window, compared with a plain model after each.
//   a document, then steps; see Steps.h
#include <optional>

#include "PlainText.h"
#include "Steps.h"
#include "Target.h"
#include "TextFile.h"
#include "WindowModel.h"
#include "bench/SilentBackend.h"
#include "editing/MainWindow.h"
#include "platform/Clock.h"
#include "platform/SpecialFolder.h"
#include "support/BlindGraphics.h"
#include "ui/PlatformColors.h"
#include "ui/toolkit/Application.h"

namespace sorbel::fuzz {

namespace {

/// A desktop whose questions are answered beforehand.
class Desktop : public bench::SilentBackend {
  public:
    enum class Button { Action, Cancel, Alternate };
    Button Answer = Button::Action;
    size_t MenuChoice = 0;
    int Questions = 0, Busy = 0;

    using bench::SilentBackend::Show;
    const MessageDialogButton* Show(const MessageDialog& dialog, Window*) override {
        ++Questions;
        if (Answer == Button::Action) return &dialog.ActionButton;
        return Answer == Button::Cancel ? &dialog.CancelButton : &dialog.AlternateActionButton;
    }
    MenuItem* PopUp(MenuItem& menu, int, int) override { return &menu.Item(MenuChoice % menu.Count()); }
    void SetBusy(bool busy) override { Busy += busy ? 1 : -1; }
};

constexpr const char* Commands[] = {"EditUndo",
                                    "EditRedo",
                                    "FileSave",
                                    "FileImportExistingFile",
                                    "LocalizationOnlyShowNonlocalizedStrings",
                                    "LocalizationNextItem",
                                    "LocalizationPreviousSring"};

/// A window on a document, and the model beside it.
class Session {
  public:
    explicit Session(StringView input) : mSteps(input), mModel(*WriteDocument(mFile)) {
        Clock::Install(&mTime);
        Platform::Colors::UseDesktop(&mDesktop);
        mApp.MenuBar = std::make_unique<MenuBar>();
        for (const char* name : Commands)
            mApp.MenuBar->Append(std::make_unique<MenuItem>(name, name));
        mApp.Perform([&] {
            mWindow = MainWindow::Create(mApp, std::make_shared<FolderItem>(mFile));
            mWindow->Show();
        });
    }
    ~Session() {
        Platform::Colors::UseDesktop(nullptr);
        StopTime();
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void Run() {
        Check();
        while (!mSteps.Empty()) {
            Step();
            Check();
        }
        Close();
    }

  private:
    /// The document that the next steps tell, as it is once it has been read from a file.
    std::shared_ptr<LocalizedStringSet> WriteDocument(const FolderItem& file) {
        auto set = std::make_shared<LocalizedStringSet>();
        FileWith(file.Name(), mSteps.Document()->ToBytes());
        Require(set->ReadFile(file), "a saved document is a valid file");
        return set;
    }

    [[nodiscard]] Listbox& List() const { return mWindow->ListBox1; }
    /// A row that is there, or -1.
    int64_t Row() {
        return static_cast<int64_t>(mSteps.Below(static_cast<size_t>(List().ListCount()) + 1)) - 1;
    }
    bool Choose(StringView name) { return mApp.Choose(*mApp.MenuBar->FindByName(name)).Enabled; }

    // --- Steps ---

    void Step() {
        static constexpr void (Session::*steps[])() = {
            &Session::Select, &Session::Click,   &Session::Expand, &Session::Type,   &Session::Type,
            &Session::Undo,   &Session::Redo,    &Session::Search, &Session::Scope,  &Session::Version,
            &Session::Save,   &Session::Merge,   &Session::Text,   &Session::Tick,   &Session::Paint,
            &Session::Reduce, &Session::GoAhead, &Session::Resize, &Session::Scroll,
        };
        (this->*mSteps.Pick(steps))();
    }
    void Select() { List().UserSelect(Row()); }
    void Click() { List().UserClick(Row(), 3, 3); }
    void Expand() {
        const bool open = mSteps.Flag();
        if (const int64_t row = Row(); row >= 0) List().UserExpand(row, open);
    }
    void Type() {
        const String text = mSteps.Text();
        TextArea& field = mWindow->LocalizedValueField;
        if (field.Enabled() && field.Text() != text) {
            const int64_t row = List().ListIndex();
            mModel.Type(List().TextTag(row), List().NumberTag(row), text, mTime.Ticks());
        }
        field.UserSetText(text);
    }
    void Undo() {
        const bool possible = mModel.Done() > 0;
        if (possible) mModel.Undo();
        Require(Choose("EditUndo") == possible, "undo can be chosen if there is a step");
    }
    void Redo() {
        const bool possible = mModel.Undone() > 0;
        if (possible) mModel.Redo();
        Require(Choose("EditRedo") == possible, "redo can be chosen if a step was undone");
    }
    void Search() { mWindow->SearchField.UserSetText(mSteps.Text()); }
    void Scope() {
        mDesktop.MenuChoice = mSteps.Below(3);
        mWindow->SearchOptionsMenu.UserMouseDown(1, 1);
    }
    void Version() { mWindow->HistoryFilter.UserChoose(static_cast<int64_t>(mSteps.Below(5))); }
    void Tick() { mTime.Advance(mSteps.Byte()); }
    void Paint() {
        BlindGraphics g;
        for (int64_t row = 0; row < List().ListCount(); ++row)
            List().PaintCell(g, row, 0, 0);
    }
    void Reduce() { Choose("LocalizationOnlyShowNonlocalizedStrings"); }
    void GoAhead() { Choose(mSteps.Flag() ? "LocalizationNextItem" : "LocalizationPreviousSring"); }
    void Resize() {
        mWindow->UserResize({static_cast<int>(mSteps.Byte()) * 8, static_cast<int>(mSteps.Byte()) * 8});
    }
    void Scroll() { List().UserScroll(Row()); }

    void Save() {
        const bool possible = mModel.Dirty();
        mModel.Save();
        Require(Choose("FileSave") == possible, "a save can be chosen if one is due");
        if (possible) CheckFile();
    }

    /// A locale file, with whatever answer to the question about its language.
    void Merge() {
        static constexpr Desktop::Button buttons[] = {Desktop::Button::Action, Desktop::Button::Cancel,
                                                      Desktop::Button::Alternate};
        mDesktop.Answer = mSteps.Pick(buttons);
        const FolderItem file = FileWith("imported.kestrum_locale", "");
        const std::shared_ptr<LocalizedStringSet> imported = WriteDocument(file);
        const bool asks = !Equal(imported->Language, mModel.Language);
        const bool cancelled = asks && mDesktop.Answer == Desktop::Button::Cancel;
        if (asks && mDesktop.Answer == Desktop::Button::Alternate) mModel.Language = imported->Language;
        if (!cancelled) mModel.Import(PlainMerge(mModel.Document, PlainDocument(*imported)), true);
        mDesktop.Questions = 0;
        Open(file);
        Require(mDesktop.Questions == (asks ? 1 : 0), "another language is asked about once");
    }

    /// Delimited text under one of two names: only one of them makes short lines a failure.
    void Text() {
        String text;
        for (size_t rows = mSteps.Below(5); rows > 0; --rows) {
            const String identifier = mSteps.Identifier();
            const auto platform = static_cast<int64_t>(mSteps.Below(5));
            text += identifier + "\t" + String(PlatformText(platform)) + "\t\t" + mSteps.Text() + "\n";
        }
        if (text.starts_with("\xEF\xBB\xBF")) return;  // whether it belongs to the text is not asked here
        ImportText(FileWith(mSteps.Flag() ? "imported.txt" : "imported.tsv", text), text);
    }
    void ImportText(const FolderItem& file, const String& text) {
        PlainDocument ignored;
        const bool fails = !file.Type().empty() && !AddTextLocale(text, ignored);
        const auto changes = PlainImport(mModel.Document, text);
        if (!fails && changes) mModel.Import(*changes, false);
        const int messages = mDesktop.Messages;
        Open(file);
        Require(mDesktop.Messages - messages == (fails || !changes ? 1 : 0), "a failed import is told once");
        Require(mApp.TakeUnhandled().empty() != fails, "only a short line is a failure of the program's");
    }
    void Open(const FolderItem& file) {
        mDesktop.File = std::make_shared<FolderItem>(file);
        Require(Choose("FileImportExistingFile"), "an import can always be chosen");
    }

    /// The last step: with or without a save, or not at all.
    void Close() {
        mDesktop.Questions = 0;
        mDesktop.Answer = Desktop::Button::Cancel;
        const bool dirty = mModel.Dirty();
        Require(mWindow->UserClose() != dirty, "a window that is due for a save can stay");
        Require(mDesktop.Questions == (dirty ? 1 : 0), "and asks for that once");
        if (!dirty) return;
        mDesktop.Answer = Desktop::Button::Action;
        Require(mWindow->UserClose(), "a window that is saved closes");
        CheckFile();
    }

    // --- What holds after each step ---

    void Check() {
        Require(mApp.TakeUnhandled().empty(), "no failure goes as far as the program's last handler");
        Require(mWindow->IsInternalChange == 0 && mDesktop.Busy == 0, "what has begun has ended");
        Require(PlainDocument(*mWindow->StringSet) == mModel.Document, "the document is the model's");
        Require(mWindow->StringSet->Language == mModel.Language, "and so is its language");
        Require(mWindow->StringSet->History.size() == mModel.Versions, "and so are its versions");
        const UndoManager& undo = *mWindow->undoManager;
        Require(undo.UndoStack().size() == mModel.Done(), "the model has as many steps to undo");
        Require(undo.RedoStack().size() == mModel.Undone(), "and as many to redo");
        Require(mWindow->IsDirty == mModel.Dirty(), "the dirty mark tells whether a save is due");
        Require(mWindow->ContentsChanged() == mWindow->IsDirty, "and the window shows it");
        Require(undo.HasChangedSinceSave() == mWindow->IsDirty, "and the undo engine agrees");
        CheckPanes();
    }

    void CheckPanes() const {
        const int64_t row = List().ListIndex();
        const bool enabled = mWindow->LocalizedValueField.Enabled();
        Require(row < List().ListCount() && enabled == (row >= 0), "the panes are for the selected row");
        if (row < 0) {
            Require(mWindow->LocalizedValueField.Text().empty(), "without a row there is no translation");
            return;
        }
        const StringView identifier = List().TextTag(row);
        const int64_t platform = List().NumberTag(row);
        const PlainDocument::Entry* const entry = mModel.Document.Find(identifier);
        Require(entry && mWindow->NameField.Text() == identifier, "the name is the row's");
        const PlainDocument::Value* const own = entry->Find(platform);
        Require(mWindow->LocalizedValueField.Text() == (own ? own->Translated : String()),
                "the translation is the row's");
        Require(mWindow->DefaultValueFieldLong.Text() == DefaultOf(*entry, platform),
                "the default value is the row's");
    }
    static String DefaultOf(const PlainDocument::Entry& entry, int64_t platform) {
        const PlainDocument::Value* const own = entry.Find(platform);
        const PlainDocument::Value* const any = entry.Find(PlatformAny);
        return own ? own->Default : any ? any->Default : String();
    }

    void CheckFile() const {
        LocalizedStringSet saved;
        Require(saved.ReadFile(mFile), "the saved file is valid");
        Require(PlainDocument(saved) == mModel.Document, "it holds the document");
        Require(saved.History.size() == mModel.Versions && saved.Language == mModel.Language,
                "with its versions and its language");
    }

    Steps mSteps;
    const FolderItem mFile = FileWith("document.kestrum_locale", "");
    WindowModel mModel;
    ManualClock mTime;
    Desktop mDesktop;
    Application mApp{mDesktop};
    std::shared_ptr<MainWindow> mWindow;
};

}  // namespace

void CheckInput(StringView input) {
    Session(input).Run();
}

}  // namespace sorbel::fuzz
