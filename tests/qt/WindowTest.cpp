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
    Small->Area.SetTextColor({0xAA0000});
    QPalette dark = light;
    dark.setColor(QPalette::Text, QColor(250, 250, 250));
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    QApplication::setPalette(dark);
    Settle();
    Settle();
    EXPECT_EQ(On<QWidget>(Small->Caption).palette().color(QPalette::WindowText), QColor(250, 250, 250));
    EXPECT_EQ(On<QWidget>(Small->Area).palette().color(QPalette::Text), QColor(0xAA, 0, 0));
    EXPECT_EQ(Backend.NamedColor("TERTIARYLabelColor"), Color::FromRGB(80, 80, 80));
    EXPECT_EQ(Backend.NamedColor("no such colour"), std::nullopt);
    QApplication::setPalette(light);
}

}  // namespace sorbel
