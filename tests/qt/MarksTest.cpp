#include <QAbstractItemView>
#include <QAccessible>
#include <QClipboard>
#include <QTextEdit>

#include "Screen.h"

namespace sorbel {

/// What a text shows of characters that cannot be seen.
class Marks : public Screen {
  protected:
    QTextEdit& Edit() { return On<QTextEdit>(Small->Area); }
    /// The pixels between two positions of the first line of a text.
    QImage Drawn(StringView text, int from, int to) {
        Small->Area.SetText(text);
        Settle();
        QTextCursor cursor(Edit().document());
        cursor.setPosition(from);
        const QRect start = Edit().cursorRect(cursor);
        cursor.setPosition(to);
        const QRect end = Edit().cursorRect(cursor);
        const QPoint corner = start.topLeft() + QPoint(1, 0);
        return Edit().viewport()->grab(QRect(corner, end.bottomLeft() - QPoint(1, 0))).toImage();
    }
    static bool IsBlank(const QImage& image) {
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixel(x, y) != image.pixel(0, 0)) return false;
        return !image.isNull();
    }
};

TEST_F(Marks, ATabIsDrawnAndBlanksAreNot) {
    Small->Field.SetFocus();
    Open();
    EXPECT_FALSE(IsBlank(Drawn("a\tb", 1, 2)));
    EXPECT_TRUE(IsBlank(Drawn("a        b", 1, 9)));
    EXPECT_FALSE(IsBlank(Drawn("\xD7\x90\t\xD7\x91", 2, 1)));  // leftward, where the tab is left of its start

    // Characters of one look in the font are told apart.
    EXPECT_NE(Drawn("a\x01"
                    "b",
                    1, 2),
              Drawn("a\x1B"
                    "b",
                    1, 2));
}

TEST_F(Marks, ChangeNothingOfTheText) {
    Small->Area.AllowTabs = true;
    Open();
    const String text =
        "a\tb\x1B"
        "c\n\td";
    Small->Area.SetText(text);
    Small->Area.SetFocus();
    Settle();
    Edit().grab();
    EXPECT_EQ(FromQt(Edit().toPlainText()), text);
    QTest::keyClick(&Edit(), Qt::Key_Tab);
    EXPECT_EQ(Small->Area.Text(), text + "\t");
    Edit().selectAll();
    Edit().copy();
    EXPECT_EQ(FromQt(QApplication::clipboard()->text()), text + "\t");
    QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(&Edit());
    EXPECT_EQ(FromQt(reader->text(QAccessible::Value)), text + "\t");
}

/// Rows are drawn alike if their texts are marked alike.
TEST_F(Marks, StandInRowsToo) {
    Small->List.AddRow("");  // the focus is drawn around the list
    Small->List.AddRow(
        "a\tb\x1B"
        "c");
    Small->List.AddRow(
        "a \u21E5 b\u2039"
        "1B\u203A"
        "c");
    Small->List.AddRow("a b c");
    Open();
    auto& rows = On<QAbstractItemView>(Small->List);
    const auto drawn = [&](int row) {
        return rows.viewport()->grab(rows.visualRect(rows.model()->index(row, 0))).toImage();
    };
    EXPECT_EQ(drawn(1), drawn(2));
    EXPECT_NE(drawn(1), drawn(3));
    EXPECT_EQ(Small->List.Cell(1),
              "a\tb\x1B"
              "c");
}

}  // namespace sorbel
