#include <QMenuBar>
#include <QPushButton>
#include <QTextEdit>

#include "Screen.h"
#include "platform/FileType.h"
#include "qt/QtDialogs.h"
#include "qt/QtMenus.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

/// A bar with Undo, "Next String" and a menu that is generated anew at each refresh.
class Menus : public Screen {
  protected:
    Menus() {
        App.MenuBar = std::make_unique<MenuBar>();
        MenuItem& edit = App.MenuBar->Append(std::make_unique<MenuItem>("EditMenu", "&Edit"));
        Undo = &edit.Append(std::make_unique<MenuItem>("EditUndo", "&Undo", "Cmd+Z"));
        edit.Append(std::make_unique<MenuItem>("", "-"));
        edit.Append(std::make_unique<MenuItem>("LocalizationNextItem", "Next", "Cmd+]"));
        Count("EditUndo");
        Count("LocalizationNextItem");
    }
    void Count(const char* name) {
        App.AddMenuHandler(name, [this, name] {
            Log += name;
            return true;
        });
    }
    QMenu& Menu(int index) { return *View->menuBar()->actions().at(index)->menu(); }

    MenuItem* Undo = nullptr;
    String Log;
};

TEST_F(Menus, KeysReachTheCommandFromAFocusedText) {
    Open();
    Small->Area.SetFocus();
    Settle();
    auto& edit = On<QTextEdit>(Small->Area);
    QTest::keyClick(&edit, 'a');
    QTest::keyClick(&edit, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Log, "EditUndo");
    EXPECT_EQ(Small->Area.Text(), "a");
    QTest::keyClick(&edit, Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(Log, "EditUndoLocalizationNextItem");
    Undo->AutoEnabled = false;
    QTest::keyClick(&edit, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Log, "EditUndoLocalizationNextItem");
}

TEST_F(Menus, EnabledStateIsShownWhileAMenuIsOpen) {
    Undo->AutoEnabled = false;
    Open();
    QAction* undo = Menu(0).actions().at(0);
    EXPECT_TRUE(undo->isEnabled());
    Menu(0).popup(QPoint(0, 0));
    EXPECT_FALSE(undo->isEnabled());
    EXPECT_TRUE(Menu(0).actions().at(2)->isEnabled());
    EXPECT_EQ(Menu(0).actions().at(1)->text(), "");  // a text would make the separator a heading
    Menu(0).close();
    EXPECT_TRUE(undo->isEnabled());
}

TEST_F(Menus, ItemsMayBeGeneratedAnew) {
    Open();
    QAction* undo = Menu(0).actions().at(0);
    MenuItem& edit = App.MenuBar->Item(0);
    edit.Remove(0);
    undo->trigger();  // its item has gone, and the separator is in its place
    EXPECT_EQ(Log, "");
    MenuItem& below = edit.Append(std::make_unique<MenuItem>("", "More"));
    below.Append(std::make_unique<MenuItem>("EditUndo", "Again", "CMD + SHIFT+1")).Checked = true;
    Backend.MenusChanged();
    Settle();
    QAction* again = Menu(0).actions().at(2)->menu()->actions().at(0);
    EXPECT_TRUE(again->isChecked());
    EXPECT_EQ(again->shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_1));
    again->trigger();
    Settle();
    EXPECT_EQ(Log, "EditUndo");
    EXPECT_TRUE(again->isChecked());  // the model says so, whatever the click did
}

TEST_F(Menus, APopUpGivesTheChosenItem) {
    Open();
    const auto choose = [](int downs, Qt::Key key) {
        Answer([downs, key](QWidget& menu) {
            for (int step = 0; step < downs; ++step)
                QTest::keyClick(&menu, Qt::Key_Down);
            QTest::keyClick(&menu, key);
        });
    };
    MenuItem& edit = App.MenuBar->Item(0);
    choose(2, Qt::Key_Return);
    EXPECT_EQ(Backend.PopUp(edit, 10, 10), &edit.Item(2));
    choose(1, Qt::Key_Escape);
    EXPECT_EQ(Backend.PopUp(edit, 10, 10), nullptr);
}

TEST_F(Menus, AQuestionGivesTheButton) {
    Open();
    MessageDialog question;
    question.Message = "Save?";
    question.ActionButton.Caption = "&Save";
    question.CancelButton.Visible = true;
    question.AlternateActionButton = {"&Don't Save", true, false, false};
    const auto press = [](Qt::Key key) {
        Answer([=](QWidget& box) { QTest::keyClick(&box, key); });
    };
    press(Qt::Key_Return);
    EXPECT_EQ(question.ShowModalWithin(*Small), &question.ActionButton);
    press(Qt::Key_Escape);
    EXPECT_EQ(question.ShowModalWithin(*Small), &question.CancelButton);
    Answer([](QWidget& box) {
        EXPECT_EQ(box.windowModality(), Qt::WindowModal);
        for (QPushButton* button : box.findChildren<QPushButton*>())
            if (button->text() == "&Don't Save") button->click();
    });
    EXPECT_EQ(question.ShowModalWithin(*Small), &question.AlternateActionButton);

    question.CancelButton.Visible = false;  // no button stands for Escape
    press(Qt::Key_Escape);
    EXPECT_EQ(question.ShowModalWithin(*Small), nullptr);
    Answer([](QWidget& box) { box.close(); });
    EXPECT_EQ(question.ShowModalWithin(*Small), nullptr);
}

TEST_F(Menus, ShortcutsAndFilters) {
    EXPECT_EQ(ShortcutKeys("Cmd+]"), QKeySequence(Qt::CTRL | Qt::Key_BracketRight));
    EXPECT_EQ(ShortcutKeys("CMD + 1"), QKeySequence(Qt::CTRL | Qt::Key_1));
    EXPECT_TRUE(ShortcutKeys("").isEmpty());
    FileType::Register(
        {{"Old", ".nvl", {}, {}, {}, true, {}, {}}, {"App", ".exe;.app", {}, {}, {}, true, {}, {}}});
    const QString types = "Old, App (*.nvl *.exe *.app)|Old (*.nvl)|App (*.exe *.app)";
    EXPECT_EQ(NameFilters("old;App", true).join('|'), types + "|All Files (*)");
    EXPECT_EQ(NameFilters("old;App", false).join('|'), types);
}

}  // namespace sorbel
