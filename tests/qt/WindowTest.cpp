#include <QAbstractScrollArea>
#include <QComboBox>
#include <QLabel>
#include <QMenuBar>

#include "Screen.h"
#include "ui/toolkit/Busy.h"

namespace sorbel {

class Windows : public Screen {};

TEST_F(Windows, ChangesAreShownTogetherAfterwards) {
    Open();
    EXPECT_EQ(View->Content().size(), QSize(400, 300));
    Small->Area.SetPlace({5, 6, 70, -3});
    Small->Field.SetEnabled(false);
    Small->Caption.SetText("&Name && more:");
    Small->Caption.SetVisible(false);
    Small->Popup.AddRow("first");
    Small->SetContentsChanged(true);
    Small->SetRepresentedFile(std::make_shared<FolderItem>("/tmp/de.kestrum_locale"));
    QWidget& area = On<QWidget>(Small->Area);
    EXPECT_EQ(area.geometry(), QRect(200, 10, 190, 100));
    Settle();
    EXPECT_EQ(area.geometry(), QRect(5, 6, 70, 0));
    EXPECT_FALSE(On<QWidget>(Small->Field).isEnabled());
    EXPECT_EQ(On<QLabel>(Small->Caption).text(), "Name & more:");
    EXPECT_FALSE(On<QWidget>(Small->Caption).isVisible());
    EXPECT_EQ(On<QComboBox>(Small->Popup).currentIndex(), -1);  // the box would choose the first row
    EXPECT_TRUE(View->isWindowModified());
    EXPECT_EQ(View->windowFilePath(), "/tmp/de.kestrum_locale");
}

TEST_F(Windows, ResizingMovesTheControlsInTheSameStep) {
    Open();
    View->resize(View->width() + 50, View->height() + 20);
    EXPECT_EQ(Small->Width(), 450);
    EXPECT_EQ(Small->Height(), 320);
    EXPECT_EQ(On<QWidget>(Small->List).height(), 220);
    EXPECT_EQ(On<QWidget>(Small->Area).width(), 240);
    View->move(120, 90);
    Settle();
    EXPECT_EQ(QPoint(Small->Left(), Small->Top()), View->Content().mapToGlobal(QPoint(0, 0)));
}

TEST_F(Windows, ALargerFontGivesAllOfItMorePixels) {
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(2 * usual.pointSizeF());
    Small->List.AddRow("one");
    Small->List.AddRow("two");
    Open();
    QApplication::setFont(large);
    Settle();
    Settle();
    const double factor = View->Units().Factor();
    EXPECT_NEAR(factor, 2 * DesignUnits(usual).Factor(), 0.3);
    EXPECT_NEAR(On<QWidget>(Small->Area).x(), 200 * factor, 1);
    EXPECT_NEAR(On<QWidget>(Small->Area).width(), Small->Area.Width() * factor, 2);

    // Places come back as the units that they were.
    View->resize(View->width() + 300, View->height());
    EXPECT_EQ(Small->Width(), DesignUnits(large).FromPixels(View->Content().width()));
    EXPECT_NEAR(On<QWidget>(Small->Area).geometry().right(), View->Content().width() - 10 * factor, 3);
    const auto& rows = On<QAbstractScrollArea>(Small->List);
    QTest::mouseClick(rows.viewport(), Qt::LeftButton, {}, QPoint(60, qRound(27 * factor)));
    EXPECT_EQ(Small->List.ListIndex(), 1);
    for (const int units : {0, 1, 17, 400})
        EXPECT_EQ(View->Units().FromPixels(View->Units().ToPixels(units)), units);
    QApplication::setFont(usual);
}

TEST_F(Windows, AMenuOfRowsFollowsTheControlOnly) {
    Small->Popup.AddRow("one");
    Small->Popup.AddRow("two");
    Small->Popup.SetListIndex(0);
    Open();
    int changes = 0;
    Small->Popup.Change = [&] {
        ++changes;
        if (Small->Popup.ListIndex() == 1) Small->Popup.SetListIndex(0);
    };
    auto& box = On<QComboBox>(Small->Popup);
    QTest::keyClick(&box, Qt::Key_Down);
    Settle();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(box.currentIndex(), 0);
}

TEST_F(Windows, MnemonicsKeysAndFocus) {
    Small->Caption.AcceleratorKey = [this] {
        Small->Field.SetFocus();
    };
    Small->Caption.SetText("&Search:");
    Open();
    QTest::keyClick(View, Qt::Key_S, Qt::AltModifier);
    Settle();
    EXPECT_TRUE(On<QWidget>(Small->Field).hasFocus());
    Small->Caption.SetFocus();
    Settle();
    QTest::keyClick(QApplication::focusWidget(), 'q');
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Shift);
    EXPECT_EQ(Small->Keys, "q");
}

TEST_F(Windows, ClosingIsTheWindowsDecision) {
    Open();
    const QPointer<QtWindow> view = View;
    Small->Refuses = true;
    View->close();
    EXPECT_TRUE(View->isVisible());
    Small->Refuses = false;
    View->close();
    EXPECT_FALSE(Small->IsOpen());
    EXPECT_EQ(Backend.ViewOf(Small.get()), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(view.isNull());
}

TEST_F(Windows, TheActiveWindowIsTheFrontOne) {
    Open();
    const auto second = std::make_shared<SmallWindow>(App);
    second->Show();
    Settle();
    EXPECT_EQ(App.FrontWindow(), second.get());
    View->activateWindow();
    Settle();
    EXPECT_EQ(App.FrontWindow(), Small.get());
    second->Show();
    Settle();
    EXPECT_EQ(QApplication::activeWindow(), Backend.ViewOf(second.get()));
}

TEST_F(Windows, TheCursorTellsOfWorkButNotWhileADialogAsks) {
    Open();
    const auto waits = [] {
        return QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
    };
    {
        const Busy work(Backend);
        { const Busy partOfIt(Backend); }
        EXPECT_TRUE(waits());
        bool waitedMeanwhile = true;
        Answer([&](QWidget& box) {
            waitedMeanwhile = waits();
            box.close();
        });
        Backend.MsgBox("A question");
        EXPECT_FALSE(waitedMeanwhile);
        EXPECT_TRUE(waits());
    }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(Windows, ColoursFollowTheAppearance) {
    const QPalette light = QApplication::palette();
    Open();
    Small->Caption.SetTextColor(Backend.Theme(SystemColor::Text));
    Small->Area.SetTextColor({0xFF8080});
    QPalette dark = light;
    dark.setColor(QPalette::Text, QColor(250, 250, 250));
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    dark.setColor(QPalette::Window, QColor(40, 40, 40));
    QApplication::setPalette(dark);
    Settle();
    Settle();
    EXPECT_EQ(On<QWidget>(Small->Caption).palette().color(QPalette::WindowText), QColor(250, 250, 250));
    EXPECT_EQ(On<QWidget>(Small->Area).palette().color(QPalette::Text), QColor(0xFF, 0x80, 0x80));
    EXPECT_EQ(Backend.NamedColor("TERTIARYLabelColor"), Color::FromRGB(80, 80, 80));
    EXPECT_EQ(Backend.NamedColor("no such colour"), std::nullopt);
    QApplication::setPalette(light);
}

}  // namespace sorbel
