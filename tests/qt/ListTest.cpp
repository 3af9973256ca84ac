#include <QListView>
#include <QScrollBar>

#include "Screen.h"
#include "ui/toolkit/Picture.h"

namespace sorbel {

class List : public Screen {
  protected:
    Listbox& Model() { return Small->List; }
    QListView& Rows() { return On<QListView>(Model()); }
    void AddRows(int count) {
        for (int row = 0; row < count; ++row)
            Model().AddRow("row " + std::to_string(row));
    }
    /// A paint comes some turns after it was asked for.
    static void SettlePaints() {
        for (int turn = 0; turn < 5; ++turn)
            Settle();
    }
    void Press(int key) {
        QTest::keyClick(&Rows(), static_cast<Qt::Key>(key));
        Settle();
    }
    void Click(QPoint at) {
        QTest::mouseClick(Rows().viewport(), Qt::LeftButton, {}, at);
        Settle();
    }
};

TEST_F(List, KeysMoveTheSelectionIntoView) {
    AddRows(100);
    Open();
    const struct {
        int Key;
        int64_t Row;
    } steps[] = {{Qt::Key_Down, 0}, {Qt::Key_Down, 1}, {Qt::Key_End, 99}, {Qt::Key_Down, 99},
                 {Qt::Key_Up, 98},  {Qt::Key_Home, 0}, {Qt::Key_Up, 0}};
    for (const auto& step : steps) {
        Press(step.Key);
        EXPECT_EQ(Model().ListIndex(), step.Row);
        EXPECT_TRUE(Rows().viewport()->rect().contains(Rows().visualRect(Rows().currentIndex())));
        EXPECT_EQ(Model().ScrollPosition(), Rows().verticalScrollBar()->value());
    }
    Press(Qt::Key_PageDown);
    EXPECT_GT(Model().ListIndex(), 5);

    Model().SetListIndex(60);  // as "Next String" does
    Settle();
    EXPECT_TRUE(Rows().viewport()->rect().contains(Rows().visualRect(Rows().currentIndex())));
    Rows().verticalScrollBar()->setValue(0);
    Model().SetListIndex(60);  // as a refresh does: the user's scrolling stands
    Settle();
    EXPECT_EQ(Model().ScrollPosition(), 0);
}

TEST_F(List, FoldersOpenAndCloseByMouseAndKeys) {
    Model().ExpandRow = [this](int64_t) {
        AddRows(3);
    };
    Model().AddFolder("first");
    Model().AddFolder("second");
    Open();
    const int height = Rows().visualRect(Rows().model()->index(0, 0)).height();
    Click({8, height / 2});
    EXPECT_TRUE(Model().Expanded(0));
    EXPECT_EQ(Model().ListIndex(), -1);
    EXPECT_EQ(Rows().model()->rowCount(), 5);
    Click({60, 2 * height + height / 2});
    EXPECT_EQ(Model().ListIndex(), 2);
    Press(Qt::Key_Left);
    EXPECT_EQ(Model().ListIndex(), 0);
    Press(Qt::Key_Left);
    EXPECT_EQ(Rows().model()->rowCount(), 2);
    Press(Qt::Key_Plus);
    EXPECT_EQ(Rows().model()->rowCount(), 5);

    int64_t clicked = 0;
    Model().CellClick = [&](int64_t row, int, int, int) {
        clicked = row;
        return false;
    };
    Click({60, 5 * height + 2});
    EXPECT_EQ(clicked, -1);
    EXPECT_EQ(Model().ListIndex(), -1);
}

TEST_F(List, AMillionRowsCostWhatIsVisible) {
    int described = 0, painted = 0;
    Model().DescribeRow = [&](int64_t row) {
        ++described;
        return "row " + std::to_string(row);
    };
    Model().CellTextPaint = [&](Graphics&, int64_t row, int, int, int) {
        ++painted;
        Model().SetCell(row, "shown");
        return false;
    };
    for (int row = 0; row < 1'000'000; ++row)
        Model().AddRow("");
    Open();
    Rows().grab();
    Model().SetListIndex(999'999);
    Settle();
    Rows().grab();
    EXPECT_EQ(Model().Cell(999'999), "shown");
    QTest::keyClick(&Rows(), 'r');  // no search by typing through all rows
    Model().DeleteAllRows();
    Model().AddRow("");
    Settle();
    EXPECT_LT(painted, 200);
    EXPECT_EQ(described, 0);
    EXPECT_EQ(Rows().model()->rowCount(), 1);
    EXPECT_EQ(Small->Keys, "r");
}

TEST_F(List, PaintingAsksForNoFurtherPainting) {
    int painted = 0;
    Model().CellTextPaint = [&](Graphics& g, int64_t row, int, int, int) {
        ++painted;
        EXPECT_EQ(g.Width(), Rows().viewport()->width());
        Model().SetCell(row, std::to_string(painted));
        return false;
    };
    AddRows(3);
    Open();
    SettlePaints();
    const int before = painted;
    EXPECT_GT(before, 0);
    SettlePaints();
    EXPECT_EQ(painted, before);
    Model().InvalidateRow(1);
    SettlePaints();
    EXPECT_GT(painted, before);
}

TEST_F(List, KeptRowPicturesFollowTheAppearance) {
    const QPalette light = QApplication::palette();
    Picture icon(16, 16, true);
    icon.IconName = "kept";
    icon.Tinted = true;
    icon.Tint = Backend.Theme(SystemColor::Text);
    icon.Fill(icon.Tint);
    Model().AddRow("row 0", 0, {}, std::make_shared<Picture>(icon));
    Open();
    const auto inPicture = [this] {
        return Rows().viewport()->grab().toImage().pixelColor(28, 9);
    };
    EXPECT_EQ(inPicture(), light.color(QPalette::Text));
    QPalette dark = light;
    dark.setColor(QPalette::Text, QColor(250, 240, 230));
    QApplication::setPalette(dark);
    SettlePaints();
    EXPECT_EQ(inPicture(), QColor(250, 240, 230));
    QApplication::setPalette(light);
}

TEST_F(List, AFailureWhilePaintingIsToldAfterwards) {
    AddRows(1);
    Model().CellTextPaint = [&](Graphics&, int64_t, int, int, int) -> bool {
        Model().CellTextPaint = nullptr;
        throw RuntimeException("broken");
    };
    Answer([](QWidget& message) { message.close(); });
    Small->Show();
    View = Backend.ViewOf(Small.get());
    View->grab();
    EXPECT_EQ(App.TakeUnhandled(), "");
    Settle();
    EXPECT_EQ(App.TakeUnhandled(), "RuntimeException");
}

}  // namespace sorbel
