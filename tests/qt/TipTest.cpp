#include <QHelpEvent>
#include <QLabel>
#include <QListView>
#include <QTextDocumentFragment>
#include <QToolTip>

#include "Screen.h"
#include "ui/toolkit/Picture.h"

namespace sorbel {

class Tips : public Screen {
  protected:
    /// What is told where the pointer rests, as one reads it.
    static QString TipAt(QWidget& widget, const QPoint& at) {
        QHelpEvent event(QEvent::ToolTip, at, widget.mapToGlobal(at));
        QCoreApplication::sendEvent(&widget, &event);
        if (!QToolTip::isVisible()) return {};
        return QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText();
    }
    QString TipOf(const Control& control) { return TipAt(On<QWidget>(control), {3, 3}); }
    QString TipOfRow(int row, int x) {
        auto& rows = On<QListView>(Small->List);
        return TipAt(*rows.viewport(), {x, rows.visualRect(rows.model()->index(row, 0)).center().y()});
    }
};

TEST_F(Tips, ALabelWithoutRoomTellsItsWholeText) {
    Small->Caption.SetText("&Wide enough");
    Open();
    EXPECT_EQ(TipOf(Small->Caption), "");
    QLabel& label = On<QLabel>(Small->Caption);
    Small->Caption.SetText("November 20, 2024 Value of the translation");
    Settle();
    const QImage cut = label.grab().toImage();
    EXPECT_EQ(TipOf(Small->Caption), "November 20, 2024 Value of the translation");
    Small->Caption.SetText("November 20, 2024 Value of the trial");
    Settle();
    EXPECT_EQ(label.grab().toImage(), cut) << "What does not fit is not drawn in part.";
    Small->Caption.Tip = [] {
        return "told by the program";
    };
    EXPECT_EQ(TipOf(Small->Caption), "told by the program");
}

TEST_F(Tips, ARowTellsWhatItHasNoRoomFor) {
    const String wide =
        "<b>An & long</b> text\nof two lines that no list of this width would show as a whole";
    Small->List.AddRow("short");
    Small->List.AddRow(wide);
    Small->List.AddRow(String(5000, 'x'));
    Open();
    EXPECT_EQ(TipAt(*On<QListView>(Small->List).viewport(), {60, 150}), "") << "below the rows";
    EXPECT_EQ(TipOfRow(0, 60), "");
    EXPECT_EQ(FromQt(TipOfRow(1, 60)), wide);
    EXPECT_EQ(TipOfRow(2, 60).size(), 1001);
}

TEST_F(Tips, ARowsPicturesAreToldBeforeItsText) {
    const auto picture = std::make_shared<Picture>(16, 16, true);
    Small->List.AddRow(String(200, 'x'), 0, {}, picture);
    Small->List.PictureTip = [](int64_t row) {
        return "picture of " + std::to_string(row);
    };
    int width = 0;
    Small->List.CellTip = [&](int64_t, int x, int cell) {
        width = cell;
        return x > cell - 20 ? "corner" : "";
    };
    Open();
    EXPECT_EQ(TipOfRow(0, 28), "picture of 0");
    EXPECT_EQ(TipOfRow(0, 60).size(), 200);
    EXPECT_EQ(TipOfRow(0, width - 10), "corner");
}

}  // namespace sorbel
