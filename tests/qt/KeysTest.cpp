// The keyboard's way through a document window.
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QWheelEvent>

#include "Screen.h"
#include "editing/MainWindow.h"
#include "platform/FileContents.h"
#include "platform/SpecialFolder.h"
#include "scripting/Scripting.h"
#include "shell/Start.h"

namespace sorbel {

class Keys : public testing::Test {
  protected:
    Keys() {
        SpecialFolder::SetResources(SORBEL_BUILD_RESOURCES);
        SpecialFolder::SetDocuments(FromQt(mDocuments.path()));
        mApp = MakeApplication(Backend);
        Backend.Serve(*mApp);
    }
    /// Nothing has been turned to the event loop yet.
    void Open() {
        mApp->OpenDocument(std::make_shared<FolderItem>(SORBEL_SAMPLES "/Notizbuch.kestrum_locale"));
        Document = dynamic_cast<MainWindow*>(mApp->FrontWindow());
        View = Backend.ViewOf(Document);
    }
    void OpenAndActivate() {
        Open();
        View->activateWindow();
        Settle();
    }
    static void Settle() { QCoreApplication::processEvents(); }
    /// A key, as often as told, to whatever has the keyboard.
    static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, int times = 1) {
        for (; times > 0; --times) {
            QTest::keyClick(QApplication::focusWidget(), key, modifiers);
            Settle();
        }
    }
    template <typename Widget = QWidget>
    Widget& On(const Control& control) {
        return dynamic_cast<Widget&>(View->ViewOf(control)->Widget());
    }
    QMenu& ScriptsMenu() { return *View->menuBar()->actions().at(2)->menu(); }

    QTemporaryDir mDocuments;
    QtBackend Backend;
    std::unique_ptr<Application> mApp;
    MainWindow* Document = nullptr;
    QtWindow* View = nullptr;
};

TEST_F(Keys, ScriptsHaveThemAsSoonAsADocumentIsOpen) {
    WriteContents(*Scripting::ScriptsFolder()->Child("First.sorbel_script"), "");
    Open();
    ASSERT_FALSE(ScriptsMenu().actions().isEmpty());
    EXPECT_EQ(ScriptsMenu().actions().at(0)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_1));
}

TEST_F(Keys, AllOfManyScriptsCanBeReachedOnASmallScreen) {
    const auto folder = Scripting::ScriptsFolder();
    for (int script = 0; script < 500; ++script)
        WriteContents(*folder->Child(std::to_string(script) + ".sorbel_script"), "");
    OpenAndActivate();
    QMenu& menu = ScriptsMenu();
    menu.popup({0, 0});
    EXPECT_LE(menu.width(), View->screen()->size().width());
    EXPECT_LE(menu.height(), View->screen()->size().height());
    QAction* const last = menu.actions().constLast();
    menu.setActiveAction(last);
    EXPECT_TRUE(menu.rect().contains(menu.actionGeometry(last)));
    menu.close();
}

TEST_F(Keys, F10LeadsIntoTheMenusAndEscapeBack) {
    OpenAndActivate();
    for (Control* const control :
         {static_cast<Control*>(&Document->SearchField), static_cast<Control*>(&Document->ListBox1),
          static_cast<Control*>(&Document->DefaultValueFieldLong)}) {
        control->SetFocus();
        Settle();
        Press(Qt::Key_F10);
        QWidget* const menu = QApplication::activePopupWidget();
        ASSERT_EQ(menu, View->menuBar()->actions().at(0)->menu());
        QTest::keyClick(menu, Qt::Key_Right);
        EXPECT_EQ(QApplication::activePopupWidget(), View->menuBar()->actions().at(1)->menu());
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        Press(Qt::Key_Escape);  // out of the bar
        EXPECT_EQ(Document->Focus(), control);
        EXPECT_TRUE(On(*control).hasFocus());
    }
}

TEST_F(Keys, ArrowsGoToTheListWhileTheTranslationCannotBeTyped) {
    OpenAndActivate();
    QListView& rows = On<QListView>(Document->ListBox1);
    Press(Qt::Key_Down, {}, 3);
    Press(Qt::Key_Return);
    EXPECT_TRUE(On(Document->LocalizedValueField).hasFocus());
    Press(Qt::Key_X);
    Press(Qt::Key_Z, Qt::ControlModifier);  // takes the selection away
    EXPECT_FALSE(Document->LocalizedValueField.Enabled());
    EXPECT_TRUE(rows.hasFocus());
    EXPECT_EQ(Document->Focus(), &Document->LocalizedValueField);

    // It gets the keyboard back, unless a key has gone to the list meanwhile.
    Document->ListBox1.SetListIndex(0);
    Settle();
    EXPECT_TRUE(On(Document->LocalizedValueField).hasFocus());
    Document->ListBox1.SetListIndex(-1);
    Settle();
    rows.verticalScrollBar()->setValue(2);
    Press(Qt::Key_Down, {}, 2);
    EXPECT_EQ(Document->ListBox1.ListIndex(), 3);  // from the first row in sight
    EXPECT_TRUE(rows.hasFocus());
    EXPECT_EQ(Document->Focus(), &Document->ListBox1);
}

TEST_F(Keys, AMenuOrAnotherWindowDoesNotMakeTheStandInTheOwner) {
    OpenAndActivate();
    Document->ListBox1.SetListIndex(0);
    Document->LocalizedValueField.SetFocus();
    Settle();
    Document->ListBox1.SetListIndex(-1);
    Settle();
    for (const Qt::FocusReason reason : {Qt::PopupFocusReason, Qt::ActiveWindowFocusReason}) {
        QFocusEvent back(QEvent::FocusIn, reason);
        QApplication::sendEvent(&On(Document->ListBox1), &back);
        EXPECT_EQ(Document->Focus(), &Document->LocalizedValueField);
    }
    QTest::mouseClick(On<QListView>(Document->ListBox1).viewport(), Qt::LeftButton, {}, {60, 5});
    EXPECT_EQ(Document->Focus(), &Document->ListBox1);
}

TEST_F(Keys, TheSearchIsReplacedEmptiedAndLeftForItsRows) {
    OpenAndActivate();
    auto& search = On<QLineEdit>(Document->SearchField);
    Document->SearchField.SetText("datei");
    const std::pair<Qt::Key, Qt::KeyboardModifier> ways[] = {{Qt::Key_S, Qt::AltModifier},
                                                             {Qt::Key_F, Qt::ControlModifier}};
    for (const auto& [key, modifier] : ways) {
        Document->ListBox1.SetFocus();
        Settle();
        for (int time = 0; time < 2; ++time) {  // also where it has the keyboard already
            Press(key, modifier);
            EXPECT_TRUE(search.hasFocus());
            EXPECT_EQ(search.selectedText(), "datei");
            search.deselect();
        }
    }
    Press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(&search, "note");
    Settle();
    EXPECT_EQ(Document->SearchField.Text(), "note");
    const int64_t found = Document->ListBox1.ListCount();
    ASSERT_GT(found, 2);

    Press(Qt::Key_Down, {}, 3);
    EXPECT_TRUE(On(Document->ListBox1).hasFocus());
    EXPECT_EQ(Document->ListBox1.ListIndex(), 2);
    Press(Qt::Key_F, Qt::ControlModifier);
    Press(Qt::Key_Return);
    EXPECT_TRUE(On(Document->ListBox1).hasFocus());
    EXPECT_EQ(Document->ListBox1.ListIndex(), 2);

    Press(Qt::Key_F, Qt::ControlModifier);
    Press(Qt::Key_Escape);
    EXPECT_EQ(Document->SearchField.Text(), "");
    EXPECT_GT(Document->ListBox1.ListCount(), found);
    EXPECT_TRUE(search.hasFocus());
    QTest::keyClicks(&search, "nothing has this text");
    Press(Qt::Key_Down);
    EXPECT_TRUE(search.hasFocus());
}

TEST_F(Keys, TheListLeadsToTheTranslation) {
    OpenAndActivate();
    const QWidget& field = On(Document->LocalizedValueField);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2}) {
        Document->ListBox1.SetFocus();
        Document->ListBox1.SetListIndex(-1);
        Settle();
        Press(key);
        EXPECT_FALSE(field.hasFocus());
        Press(Qt::Key_Down);
        Press(key);
        EXPECT_TRUE(field.hasFocus());
        EXPECT_FALSE(Document->ListBox1.Expanded(0));
    }
    // A key that is held down does not go on in the text.
    const String text = Document->LocalizedValueField.Text();
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, "\r", true);
    QApplication::sendEvent(QApplication::focusWidget(), &held);
    EXPECT_EQ(Document->LocalizedValueField.Text(), text);
    Press(Qt::Key_Return);
    QApplication::sendEvent(QApplication::focusWidget(), &held);
    EXPECT_EQ(Document->LocalizedValueField.Text(), "\n\n" + text);
}

TEST_F(Keys, TypingInTheListFindsNothing) {
    OpenAndActivate();
    Press(Qt::Key_Down);
    QTest::keyClicks(QApplication::focusWidget(), "neue n");
    Settle();
    EXPECT_EQ(Document->ListBox1.ListIndex(), 0);
    EXPECT_TRUE(On(Document->ListBox1).hasFocus());
    EXPECT_FALSE(Document->IsDirty);
}

TEST_F(Keys, ADoubleClickOpensAFolder) {
    OpenAndActivate();
    QListView& rows = On<QListView>(Document->ListBox1);
    const auto doubleClick = [&](int row, int x) {
        const QPoint at(x, rows.visualRect(rows.model()->index(row, 0)).center().y());
        QTest::mouseClick(rows.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(rows.viewport(), Qt::LeftButton, {}, at);
        Settle();
    };
    doubleClick(1, 60);
    EXPECT_TRUE(Document->ListBox1.Expanded(1));
    EXPECT_EQ(Document->ListBox1.ListIndex(), 1);
    doubleClick(2, 60);  // of a platform
    EXPECT_EQ(Document->ListBox1.ListIndex(), 2);
    doubleClick(1, 60);
    EXPECT_FALSE(Document->ListBox1.Expanded(1));
    doubleClick(1, 8);  // two clicks on the triangle
    EXPECT_FALSE(Document->ListBox1.Expanded(1));
}

TEST_F(Keys, TheListHasAFrameWhereNoRowShowsTheFocus) {
    OpenAndActivate();
    QListView& rows = On<QListView>(Document->ListBox1);
    const auto framed = [&] {
        Settle();
        const QImage seen = rows.viewport()->grab().toImage();
        return seen.pixelColor(seen.width() - 1, seen.height() / 2) ==
               rows.palette().color(QPalette::Highlight);
    };
    EXPECT_TRUE(framed());
    Press(Qt::Key_Down);
    EXPECT_FALSE(framed());
    rows.verticalScrollBar()->setValue(20);
    EXPECT_TRUE(framed());
    Document->SearchField.SetFocus();
    EXPECT_FALSE(framed());
}

TEST_F(Keys, TheTranslationsMnemonicShowsWhereItLeads) {
    OpenAndActivate();
    QWidget& label = On(Document->TranslationText);
    const QImage before = label.grab().toImage();
    for (const int64_t row : {-1, 0}) {
        Document->ListBox1.SetListIndex(row);
        Document->ListBox1.SetFocus();
        Settle();
        Press(Qt::Key_T, Qt::AltModifier);
        EXPECT_TRUE(label.hasFocus());
        EXPECT_NE(label.grab().toImage(), before);
    }
    Document->ListBox1.SetFocus();
    Settle();
    EXPECT_EQ(label.grab().toImage(), before);
}

TEST_F(Keys, TheWheelChangesNothingInPassing) {
    OpenAndActivate();
    ASSERT_GT(Document->HistoryFilter.ListCount(), 1);
    const auto wheel = [](QWidget& over, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event({5, 5}, over.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&over, &event);
        Settle();
    };
    QWidget& versions = On(Document->HistoryFilter);
    wheel(versions, {});
    EXPECT_EQ(Document->HistoryFilter.ListIndex(), 0);
    EXPECT_FALSE(versions.hasFocus());
    for (const TextArea* pane : {&Document->DefaultValueFieldLong, &Document->LocalizedValueField}) {
        auto& text = On<QTextEdit>(*pane);
        const double size = text.currentFont().pointSizeF();
        wheel(*text.viewport(), Qt::ControlModifier);
        EXPECT_EQ(text.currentFont().pointSizeF(), size) << pane->Name();
        EXPECT_EQ(text.font(), QApplication::font(&text));
    }
    Document->HistoryFilter.SetFocus();
    Settle();
    wheel(versions, {});
    EXPECT_EQ(Document->HistoryFilter.ListIndex(), 1);
}

}  // namespace sorbel
