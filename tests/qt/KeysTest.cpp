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

}  // namespace sorbel
