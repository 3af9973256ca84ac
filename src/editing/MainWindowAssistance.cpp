// What the window tells of itself beyond what it shows.
#include "editing/MainWindow.h"
#include "editing/rules/PaneLayout.h"
#include "platform/GroupedNumber.h"

namespace sorbel {

namespace {

String ProgressText(const LocalizedStringSet& document) {
    const LocalizedStringSet::Progress progress = document.TranslationProgress();
    return GroupedNumber(progress.Translated) + " of " + GroupedNumber(progress.Rows) + " translated";
}

}  // namespace

void MainWindow::SetUpAssistance() {
    StaticText3.Labelled = &SearchField;
    StaticText4.Labelled = &NameField;
    DefaultValueLabel.Labelled = &DefaultValueFieldLong;
    HistoryDefaultValueLabel.Labelled = &HistoryDefaultValueFieldLong;
    TranslationText.Labelled = &LocalizedValueField;
    SimpleSplitter1.Limit = [this](int left) {
        return LimitVerticalSplitter(left, SimpleSplitter1.Width(), Width());
    };
    SimpleSplitter2.Limit = [this](int top) {
        return LimitHorizontalSplitter(top, SimpleSplitter2.Height(), Height());
    };
    Description = HistoryFilter.Tip = [this] {
        return ProgressText(*StringSet);
    };
}

}  // namespace sorbel
