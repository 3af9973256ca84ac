#include "editing/MainWindow.h"
#include "journal/Journal.h"
#include "ui/Icons.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

namespace {

constexpr Locks LockLT{true, true, false, false};
constexpr Locks LockLTB{true, true, false, true};
constexpr Locks LockLTR{true, true, true, false};
constexpr Locks LockAll{true, true, true, true};
constexpr Locks LockLR{true, false, true, false};
constexpr Locks LockL{true, false, false, false};

}  // namespace

MainWindow::MainWindow(Application& app)
    : Window(app, "Untitled", {640, 480}),
      ListBox1(*this, "ListBox1", {20, 71, 340, 389}, LockLTB, 0),
      LocalizedValueField(*this, "LocalizedValueField", {372, 204, 248, 256}, LockAll, 1),
      DefaultValueFieldLong(*this, "DefaultValueFieldLong", {372, 70, 248, 100}, LockLR, 2),
      DefaultValueLabel(*this, "DefaultValueLabel", {372, 46, 131, 20}, LockLR, 3),
      TranslationText(*this, "TranslationText", {372, 183, 248, 20}, LockLR, 4),
      SimpleSplitter1(*this, "SimpleSplitter1", {362, 0, 8, 480}, LockLTB, 0),
      SimpleSplitter2(*this, "SimpleSplitter2", {372, 176, 248, 8}, LockLTR, 0),
      StaticText3(*this, "StaticText3", {20, 14, 52, 20}, LockL, 7),
      SearchField(*this, "SearchField", {84, 13, 248, 22}, LockL, 8),
      StaticText4(*this, "StaticText4", {372, 20, 46, 20}, LockLT, 9),
      NameField(*this, "NameField", {421, 20, 199, 20}, LockLT, 10),
      HistoryFilter(*this, "HistoryFilter", {20, 45, 340, 20}, LockLT, 11),
      HistoryDefaultValueFieldLong(*this, "HistoryDefaultValueFieldLong", {663, 70, 248, 100}, LockLR, 12),
      HistoryDefaultValueLabel(*this, "HistoryDefaultValueLabel", {663, 45, 248, 20}, {}, 13),
      SearchOptionsMenu(*this, "SearchOptionsMenu", {337, 13, 22, 22}, LockLT, 15) {
    Resizeable = true;
    SetUpControls();
    SetUpAssistance();
    BindEvents();
    AddMenuHandlers();
}

void MainWindow::SetUpControls() {
    LocalizedValueField.AllowTabs = true;
    LocalizedValueField.SpellChecking = true;
    LocalizedValueField.SetTextColor(SystemTextColor());
    LocalizedValueField.SetEnabled(false);
    for (TextArea* pane : {&DefaultValueFieldLong, &HistoryDefaultValueFieldLong}) {
        pane->ReadOnly = true;
        pane->StyledText = true;
        pane->SetTextColor(SystemTextColor());
    }
    HistoryDefaultValueFieldLong.SetVisible(false);
    SimpleSplitter1.Minimum = SimpleSplitter1.Maximum = 200;
    SimpleSplitter2.Minimum = SimpleSplitter2.Maximum = 130;

    DefaultValueLabel.SetText("&Default Value:");
    TranslationText.SetText("Translation:");
    StaticText3.SetText("&Search:");
    StaticText3.SecondKey = "Cmd+F";
    StaticText4.SetText("Name:");
    HistoryDefaultValueLabel.SetText("Untitled");
    NameField.SetText("No Selection");
    NameField.SetItalic(true);
    NameField.Selectable = true;
    NameField.Mnemonic = false;  // identifiers may hold "&"
    for (Label* label : {&DefaultValueLabel, &TranslationText, &StaticText3, &StaticText4, &NameField,
                         &HistoryDefaultValueLabel})
        label->SetTextColor(SystemTextColor());

    ListBox1.SetAccessibleName("Strings");
    LocalizedValueField.SetAccessibleName("Translation");
    DefaultValueFieldLong.SetAccessibleName("Default Value");
    HistoryDefaultValueFieldLong.SetAccessibleName("Earlier Default Value");
    SearchField.SetAccessibleName("Search");
    NameField.SetAccessibleName("Name");
    HistoryFilter.SetAccessibleName("Version");
    SearchOptionsMenu.SetAccessibleName("Search Options");
    SimpleSplitter1.SetAccessibleName("Width of the Strings");
    SimpleSplitter2.SetAccessibleName("Height of the Default Value");
}

void MainWindow::BindEvents() {
    ListBox1.Change = [this] {
        ListBox1_Change();
    };
    ListBox1.ExpandRow = [this](int64_t row) {
        ListBox1_ExpandRow(row);
    };
    ListBox1.CellClick = [this](int64_t row, int, int, int) {
        return ListBox1_CellClick(row);
    };
    ListBox1.CellTextPaint = [this](Graphics& g, int64_t row, int, int, int) {
        return ListBox1_CellTextPaint(g, row);
    };
    ListBox1.DescribeRow = [this](int64_t row) {
        return ListBox1_DescribeRow(row);
    };
    ListBox1.PictureTip = [this](int64_t row) {
        return ListBox1_PictureTip(row);
    };
    ListBox1.CellTip = [this](int64_t row, int x, int width) {
        return ListBox1_CellTip(row, x, width);
    };
    LocalizedValueField.TextChange = [this] {
        LocalizedValueField_TextChange();
    };
    ListBox1.EditRow = [this] {
        LocalizedValueField.SetFocus();
    };
    SearchField.TextChange = [this] {
        FilterStrings();
        mChosenSinceSearch = false;
    };
    SearchField.GoOn = [this] {
        SearchField_GoOn();
    };
    HistoryFilter.Change = [this] {
        HistoryFilter_Change();
    };
    SimpleSplitter1.Moved = [this] {
        SimpleSplitter1_Moved();
    };
    SimpleSplitter2.Moved = [this] {
        SimpleSplitter2_Moved();
    };
    SearchOptionsMenu.Open = [this] {
        SearchOptionsMenu.Icon = Icons::GetIcon("OptionsMenu");
    };
    SearchOptionsMenu.Tip = [this] {
        return SearchOptionsMenu_Tip();
    };
    SearchOptionsMenu.MouseDown = [this](int, int) {
        return SearchOptionsMenu_MouseDown();
    };

    DefaultValueLabel.AcceleratorKey = [this] {
        DefaultValueFieldLong.SetFocus();
    };
    StaticText3.AcceleratorKey = [this] {
        SearchField.SetFocus();
        App().Desktop().Edit(SearchField, EditCommand::SelectAll);  // what is typed next replaces it
    };
    // Meant: the label takes the focus itself, so the key leads away from the field below it.
    TranslationText.AcceleratorKey = [this] {
        TranslationText.SetFocus();
    };
}

Color MainWindow::SystemTextColor() const {
    return App().Desktop().Theme(SystemColor::Text);
}

Color MainWindow::DisabledTextColor() const {
    return App().Desktop().Theme(SystemColor::DisabledText);
}

}  // namespace sorbel
