#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "editing/undo/UndoManager.h"
#include "notifications/Notifications.h"
#include "platform/Finder.h"
#include "scripting/FrontDocument.h"
#include "stringset/LocalizedStringSet.h"
#include "ui/OptionsButton.h"
#include "ui/SimpleSplitter.h"
#include "ui/toolkit/Busy.h"
#include "ui/toolkit/Label.h"
#include "ui/toolkit/Listbox.h"
#include "ui/toolkit/PopupMenu.h"
#include "ui/toolkit/TextEditor.h"
#include "ui/toolkit/Window.h"

namespace sorbel {

class Journal;
class LeftJournal;

/// The editing of one locale file: the document, its undo history and the controls. Its methods stand in one
/// .cpp for each subject; what they decide is worked out in editing/rules.
class MainWindow : public Window, public Listener, public FrontDocument {
  public:
    /// A window on a file. Fails with a RuntimeException if the file cannot be read.
    static std::shared_ptr<MainWindow> Create(Application& app, const std::shared_ptr<FolderItem>& f);
    explicit MainWindow(Application& app);  // use Create
    ~MainWindow() override;

    [[nodiscard]] String ClassName() const override { return "MainWindow"; }

    // --- Controls, in creation order ---
    Listbox ListBox1;
    TextArea LocalizedValueField;
    TextArea DefaultValueFieldLong;
    Label DefaultValueLabel;
    Label TranslationText;
    SimpleSplitter SimpleSplitter1;
    SimpleSplitter SimpleSplitter2;
    Label StaticText3;
    TextField SearchField;
    Label StaticText4;
    Label NameField;
    PopupMenu HistoryFilter;
    TextArea HistoryDefaultValueFieldLong;
    Label HistoryDefaultValueLabel;
    OptionsButton SearchOptionsMenu;

    // --- The document and the state of the window ---
    std::shared_ptr<LocalizedStringSet> ActiveHistory;  ///< the version compared with, or null
    bool DefaultChecked = true;
    /// By place in `Entries`, whether the string is new or changed since `ActiveHistory`. A place beyond the
    /// end counts as to be shown, so without a version it is empty.
    std::vector<bool> HistoryFilterShouldShow;
    bool IsDirty = false;
    /// Above 0 while the window itself writes the panes or the document: a counter, since assignments nest.
    int64_t IsInternalChange = 0;
    int64_t LastScrollPosition = 0;
    String lastSelectedItem;
    std::shared_ptr<FolderItem> mDiskFile;
    bool NameChecked = true;
    std::shared_ptr<LocalizedStringSet> StringSet;
    bool TranslatedChecked = true;
    std::unique_ptr<UndoManager> undoManager;

    // --- Lifecycle (MainWindowLifecycle.cpp) ---
    void SaveFile();
    void UpdateProxyIcon();
    void UpdateLanguage();

    // --- Unsaved changes (MainWindowRecovery.cpp) ---
    /// Asks what is to become of changes of the file that were not saved when the program last ended.
    void OfferRestore();

    // --- List (MainWindowList.cpp) ---
    void ShowAllStrings();

    // --- Filtering and search (MainWindowFilter.cpp) ---
    void FilterStrings();

    // --- Value editor (MainWindowEditor.cpp, MainWindowBatch.cpp, MainWindowLayout.cpp) ---
    void ShowDefaultValue();
    void ValueChanged(StringView identifier) override;
    void BatchEnded() override;
    void RepositionDefaultValueFields();

    // --- History (MainWindowHistory.cpp) ---
    void RebuildHistoryPopup();
    void DetermineChangedStrings(std::shared_ptr<LocalizedStringSet> older);

    // --- Painting (MainWindowPainting.cpp) ---
    [[nodiscard]] static String TruncateString(Graphics& g, StringView text, int64_t maxWidth);
    [[nodiscard]] static String TruncateString(Graphics& g, StringView text, int64_t maxWidth,
                                               bool& truncated);

    // --- Interchange (interchange/commands) ---
    /// Imports delimited text. False: the file is not such text, and nothing has happened.
    bool DetectFileFormat(const FolderItem& f);
    /// Writes the translations into `EditedApplication`. What goes wrong is shown to the user.
    void ExportToApplication(bool runAfterExport);

    // --- What scripts reach ---
    [[nodiscard]] Window& DocumentWindow() override { return *this; }
    [[nodiscard]] int64_t RowCount() const override { return ListBox1.ListCount(); }
    [[nodiscard]] int64_t SelectedRow() const override { return ListBox1.ListIndex(); }
    void SelectRow(int64_t row) override { ListBox1.SetListIndex(row); }
    [[nodiscard]] String DefaultText() const override { return DefaultValueFieldLong.Text(); }
    [[nodiscard]] String TranslatedText() const override { return LocalizedValueField.Text(); }
    void SetTranslatedText(StringView text) override { LocalizedValueField.SetText(text); }

    // --- Events of the window ---
    void Event_Close() override;
    bool Event_CancelClose(bool appQuitting) override;
    void Event_Resized() override { RepositionDefaultValueFields(); }
    void Event_Resizing() override { RepositionDefaultValueFields(); }
    void Event_EnableMenuItems() override;

  private:
    void Constructor(const std::shared_ptr<FolderItem>& f);
    void SetUpControls();
    void SetUpAssistance();
    void BindEvents();
    void AddMenuHandlers();
    void WriteDocument();
    void StartJournal();
    void SaveSafely(StringView bytes);
    void TellUnprotected(const String& reason);
    void NoteUnsaved();
    enum class Answer { Restore, NotNow, Discard };
    Answer AskWhetherToRestore(const LeftJournal& left);
    void Restore(const LeftJournal& left);
    [[nodiscard]] Busy BusyIfLarge() const;
    [[nodiscard]] bool OnlyNonlocalized() const;
    [[nodiscard]] MenuItem* Item(StringView name) const;
    void EnableItem(StringView name, bool enabled) const;

    // Menu handlers; true: dealt with.
    bool _EditRedo_Action();
    bool _EditUndo_Action();
    bool _ExportExportandRun_Action();
    bool _ExportExportTabDelimited_Action();
    bool _ExportExporttoApplication_Action();
    bool _FileClose_Action();
    bool _FileImportExistingFile_Action();
    bool _FileSave_Action();
    bool _LocalizationNextItem_Action();
    bool _LocalizationOnlyShowNonlocalizedStrings_Action();
    bool _LocalizationPreviousSring_Action();

    // Events of the controls.
    void ListBox1_Change();
    void ListBox1_ExpandRow(int64_t row);
    bool ListBox1_CellClick(int64_t row);
    bool ListBox1_CellTextPaint(Graphics& g, int64_t row);
    [[nodiscard]] String ListBox1_DescribeRow(int64_t row) const;
    [[nodiscard]] String ListBox1_PictureTip(int64_t row) const;
    [[nodiscard]] String ListBox1_CellTip(int64_t row, int x, int width) const;
    void LocalizedValueField_TextChange();
    void SimpleSplitter1_Moved();
    void SimpleSplitter2_Moved();
    void SearchField_GoOn();
    void HistoryFilter_Change();
    bool SearchOptionsMenu_MouseDown();
    [[nodiscard]] String SearchOptionsMenu_Tip() const;

    void ShowNoSelection();
    void ShowSelectedRow(int64_t row);
    void FlipScope(StringView caption);
    void AddMatches(const SharedText& identifier, const PlatformTable& entry, const Finder& term);
    [[nodiscard]] bool IsShown(size_t place) const {
        return place >= HistoryFilterShouldShow.size() || HistoryFilterShouldShow[place];
    }
    void BringDirtyInStep();
    void RefreshAfterImport();
    bool mChosenSinceSearch = false;    ///< a row, by anything else than the search itself
    std::unique_ptr<Journal> mJournal;  ///< until the window is closed
    void RebuildScriptsMenu();
    std::optional<uint64_t> mScriptsShownIn;  ///< the operation that the Scripts menu was last rebuilt in

    enum class Imported { Done, Cancelled };
    Imported ImportFile(const FolderItem& f);
    Imported MergeLocale(const LocalizedStringSet& imported);
    bool AskLanguage(StringView importedLanguage);
    void UpdateApplication();

    void DrawPlatformIcons(Graphics& g, const PlatformTable& entry) const;
    [[nodiscard]] Color SystemTextColor() const;
    [[nodiscard]] Color DisabledTextColor() const;

    // Reactions to changes, and what is remembered of those put off in a batch (MainWindowBatch.cpp).
    struct PutOff {
        explicit PutOff(bool onlyNonlocalized) : OnlyNonlocalized(onlyNonlocalized) {}

        bool OnlyNonlocalized;       ///< as in the whole batch, since changes touch no filter
        std::optional<Finder> Term;  ///< searched for, likewise; nothing without a search
        bool Selected = false;       ///< a row, by a reaction put off
        bool Deselected = false;     ///< by the next one
    };
    void ReactToChange(StringView identifier);
    void PutOffReaction(StringView identifier);
    void BeginPutOff();
    [[nodiscard]] bool SearchSelects(StringView identifier, const PlatformTable& entry, bool shown) const;
    bool mReactedInBatch = false;               ///< to the first change of the batch that is going on
    std::optional<PutOff> mPutOff;              ///< the reactions to later ones
    Dictionary<String, bool> mHiddenMeanwhile;  ///< strings that a reaction put off would have filtered out
};

}  // namespace sorbel
