// What the window tells of itself beyond what it shows.
#include "editing/MainWindow.h"

namespace sorbel {

void MainWindow::SetUpAssistance() {
    StaticText3.Labelled = &SearchField;
    StaticText4.Labelled = &NameField;
    DefaultValueLabel.Labelled = &DefaultValueFieldLong;
    HistoryDefaultValueLabel.Labelled = &HistoryDefaultValueFieldLong;
    TranslationText.Labelled = &LocalizedValueField;
}

}  // namespace sorbel
