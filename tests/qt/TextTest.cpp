#include <QClipboard>
#include <QLineEdit>
#include <QScrollBar>
#include <QTextEdit>

#include "Screen.h"
#include "qt/Contrast.h"

namespace sorbel {

class Text : public Screen {
  protected:
    QTextEdit& Edit() { return On<QTextEdit>(Small->Area); }
    void FocusArea() {
        Small->Area.SetFocus();
        Settle();
    }
};

TEST_F(Text, EachKeyIsOneChangeAndTheCursorStays) {
    Small->Area.SetText("ab\r\ncd");
    Open();
    FocusArea();
    std::vector<String> changes;
    Small->Area.TextChange = [&] {
        changes.push_back(Small->Area.Text());
    };
    Edit().moveCursor(QTextCursor::Start);
    for (const char key : {'x', 'y'}) {
        QTest::keyClick(&Edit(), key);
        Settle();
    }
    EXPECT_EQ(changes, (std::vector<String>{"xab\r\ncd", "xyab\r\ncd"}));
    EXPECT_EQ(Edit().textCursor().position(), 2);

    QTest::keyClick(&Edit(), Qt::Key_Return, Qt::ShiftModifier);
    Settle();
    EXPECT_EQ(Small->Area.Text(), "xy\r\nab\r\ncd");
    EXPECT_FALSE(Edit().document()->isUndoAvailable());
}

TEST_F(Text, CompositionIsOneChange) {
    Open();
    FocusArea();
    int changes = 0;
    Small->Area.TextChange = [&] {
        ++changes;
    };
    for (const char* step : {"k", "ka"}) {
        QInputMethodEvent composing(step, {});
        QCoreApplication::sendEvent(&Edit(), &composing);
        Settle();
    }
    EXPECT_EQ(changes, 0);
    QInputMethodEvent done;
    done.setCommitString(QStringLiteral("\u304B"));
    QCoreApplication::sendEvent(&Edit(), &done);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(Small->Area.Text(), "\xE3\x81\x8B");
}

TEST_F(Text, AssignedTextsPutTheCursorWhereTheyChanged) {
    Open();
    struct Case {
        const char *Before, *After;
        int From, Cursor;
    };
    for (const Case& c : {Case{"one three", "one two three", 4, 8}, Case{"one two three", "one three", 8, 4},
                          Case{"Open", "Save as", 2, 7}, Case{"Close file", "Open file", 0, 9},
                          Case{"two", "one two", 1, 4}}) {
        Small->Area.SetText(c.Before);
        Settle();
        QTextCursor cursor = Edit().textCursor();
        cursor.setPosition(c.From);
        Edit().setTextCursor(cursor);
        Small->Area.SetText("x");
        Small->Area.SetText(c.After);  // only what is there in the end is shown
        Settle();
        EXPECT_EQ(Edit().toPlainText(), c.After);
        EXPECT_EQ(Edit().textCursor().position(), c.Cursor) << c.After;
    }
    Edit().selectAll();
    Small->Area.SetText("one two");
    Settle();
    EXPECT_EQ(Edit().textCursor().selectedText(), "one two");
}

TEST_F(Text, AnEditOfWhatIsNoLongerTheTextIsNotWritten) {
    Small->Area.SetText("one");
    Small->Field.SetText("one");
    Open();
    const auto edit = [this] {
        Edit().insertPlainText("x");  // past all events
        On<QLineEdit>(Small->Field).insert("x");
    };
    Small->Area.SetText("two");
    Small->Field.SetText("two");
    edit();
    EXPECT_EQ(Small->Area.Text() + Small->Field.Text(), "twotwo");
    Settle();
    EXPECT_EQ(Edit().toPlainText(), "two");
    EXPECT_EQ(On<QLineEdit>(Small->Field).text(), "two");
    for (TextEditor* editor :
         {static_cast<TextEditor*>(&Small->Area), static_cast<TextEditor*>(&Small->Field)})
        editor->SetSubject("another thing");  // with the same text
    edit();
    EXPECT_EQ(Small->Area.Text() + Small->Field.Text(), "twotwo");
    Settle();
    edit();
    EXPECT_EQ(Small->Area.Text() + Small->Field.Text(), "xtwotwox");
}

TEST_F(Text, WhatTheOwnerMakesOfAnEditIsShown) {
    Open();
    FocusArea();
    Small->Area.TextChange = [this] {
        if (Small->Area.Text() == "x") Small->Area.SetText("owner's");
    };
    QTest::keyClick(&Edit(), 'x');
    Settle();
    EXPECT_EQ(Edit().toPlainText(), "owner's");
    Small->Area.SetEnabled(false);
    Edit().insertPlainText("x");
    Settle();
    EXPECT_EQ(Edit().toPlainText(), "owner's");
}

TEST_F(Text, AnotherSubjectIsShownFromItsTop) {
    String lines = "first";
    for (int line = 0; line < 40; ++line)
        lines += "\nline";
    Small->Area.SetText(lines);
    Open();
    int subject = 0;
    for (const String& text : {lines, lines + "\nmore", "other\n" + lines, String("short"), String()}) {
        Edit().moveCursor(QTextCursor::End);
        Small->Area.SetSubject(std::to_string(++subject));
        Small->Area.SetText(text);
        Settle();
        EXPECT_EQ(FromQt(Edit().toPlainText()), text);
        EXPECT_EQ(Edit().textCursor().position(), 0);
        EXPECT_EQ(Edit().textCursor().anchor(), 0);
        EXPECT_EQ(Edit().verticalScrollBar()->value(), 0);
    }
}

TEST_F(Text, RunsAreColoured) {
    Small->Area.StyledText = Small->Area.ReadOnly = true;
    Small->Area.SetText("");
    for (const auto& [text, color] :
         {std::pair{"a\r\n", 0x00AA00u}, {"\xC3\xA9\xF0\x9F\x98\x80", 0u}, {"z", 0xAA0000u}}) {
        Small->Area.SetSelTextColor({color});
        Small->Area.SetSelText(text);
    }
    Open();
    const auto colorAt = [&](int position) {
        QTextCursor cursor(Edit().document());
        cursor.setPosition(position + 1);
        const QTextCharFormat format = cursor.charFormat();
        return format.hasProperty(QTextFormat::ForegroundBrush) ? format.foreground().color() : QColor();
    };
    EXPECT_FALSE(colorAt(2).isValid());
    EXPECT_FALSE(colorAt(4).isValid());
    EXPECT_EQ(colorAt(5), QColor(0xAA, 0, 0));
    // This green is too bright to be read on white, and red too dark on black.
    EXPECT_EQ(colorAt(0).hue(), 120);
    EXPECT_GE(Contrast(colorAt(0), Qt::white), ContrastOfText);
    const QPalette light = QApplication::palette();
    QPalette dark = light;
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Base, QColor(32, 32, 32));
    QApplication::setPalette(dark);
    Settle();
    Settle();
    EXPECT_EQ(colorAt(0), QColor(0, 0xAA, 0));
    EXPECT_EQ(colorAt(5).hue(), 0);
    EXPECT_GE(Contrast(colorAt(5), QColor(32, 32, 32)), ContrastOfText);
    QApplication::setPalette(light);
}

TEST_F(Text, NoBreakSpacesAndBadBytesSurviveCopyAndPaste) {
    Small->Area.SetText(
        "a\xC2\xA0"
        "b\xFF");
    Open();
    FocusArea();
    Backend.Edit(Small->Area, EditCommand::SelectAll);
    Backend.Edit(Small->Area, EditCommand::Copy);
    Small->Field.SetFocus();
    Settle();
    EXPECT_EQ(Small->Focus(), &Small->Field);
    Backend.Edit(Small->Field, EditCommand::Paste);
    EXPECT_EQ(Small->Field.Text(), Small->Area.Text());
    Backend.Edit(Small->Area, EditCommand::Clear);
    EXPECT_EQ(Small->Area.Text(), "");
}

TEST_F(Text, TabLeavesOrStaysAsTheFieldSays) {
    Small->Area.AllowTabs = true;
    Open();
    FocusArea();
    QTest::keyClick(&Edit(), Qt::Key_Tab);
    EXPECT_EQ(Small->Area.Text(), "\t");
    QTest::keyClick(&Edit(), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(Small->Focus(), &Small->Field);
    EXPECT_TRUE(Edit().toolTip().contains("Ctrl+Tab"));  // who has typed a tab wonders how to get out
    FocusArea();
    QTest::keyClick(&Edit(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Small->Focus(), &Small->List);
}

TEST_F(Text, AFieldDisabledForAWhileKeepsTheFocus) {
    Open();
    FocusArea();
    Small->Area.SetEnabled(false);
    Settle();
    QTest::keyClick(QApplication::focusWidget(), 'x');
    Small->Area.SetEnabled(true);
    Settle();
    QTest::keyClick(QApplication::focusWidget(), 'y');
    EXPECT_EQ(Small->Area.Text(), "y");
    EXPECT_EQ(Small->Keys, "x");
    EXPECT_EQ(Small->Field.Text(), "");
}

}  // namespace sorbel
