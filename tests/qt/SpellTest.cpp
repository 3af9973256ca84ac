#include <QFile>
#include <QMenu>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextEdit>

#include "Screen.h"
#include "qt/SpellChecker.h"

namespace sorbel {

class Spelling : public Screen {
  protected:
    Spelling() {
        qputenv("DICPATH", mFolder.path().toUtf8());
        Small->Area.SpellChecking = true;
    }
    ~Spelling() override { qunsetenv("DICPATH"); }

    void Write(const QString& name, const QByteArray& content) {
        QFile file(mFolder.filePath(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
    }
    void AddDictionary(const QString& name, const QByteArray& words, const QByteArray& encoding = "UTF-8") {
        Write(name + ".aff", "SET " + encoding + "\nTRY abcdefghijklmnopqrstuvwxyz\n");
        Write(name + ".dic", QByteArray::number(words.count('\n') + 1) + "\n" + words + "\n");
    }
    [[nodiscard]] QString Found(const QString& code) {
        return FindDictionary(code, {mFolder.path()}).section('/', -1);
    }
    QTextEdit& Edit() { return On<QTextEdit>(Small->Area); }
    /// The marked words, in order.
    QStringList Marked() {
        QStringList words;
        for (QTextBlock block = Edit().document()->begin(); block.isValid(); block = block.next())
            for (const auto& range : block.layout()->formats())
                words += block.text().mid(range.start, range.length);
        return words;
    }
    void OpenWith(const char* text) {
        AddDictionary("de_DE", "kleine\nDatei\nSchrift");
        Small->Area.SetText(text);
        Small->Area.SetSpellingLanguage("de");
        Open();
    }

    QTemporaryDir mFolder;
};

TEST_F(Spelling, DictionariesAreFoundByCode) {
    for (const char* name : {"de_AT", "de_DE", "pt_BR", "eo", "nds_XX"})
        AddDictionary(name, "a");
    Write("fr_FR.dic", "1\na\n");  // without its rules
    const struct {
        const char *Code, *Found;
    } cases[] = {{"de", "de_DE"}, {"DE-at", "de_AT"}, {"de_CH", "de_DE"}, {"deu", "de_DE"},
                 {"pt", "pt_BR"}, {"eo", "eo"},       {"nds", "nds_XX"},  {"fr", ""},
                 {"", ""},        {"d*", ""},         {"../de", ""}};
    for (const auto& c : cases)
        EXPECT_EQ(Found(c.Code), c.Found) << c.Code;
}

TEST_F(Spelling, WordsAreWhatAPersonWrote) {
    const struct {
        const char16_t *Line, *Words;
    } cases[] = {{u"&Open the Fi&le", u"Open|the|File"},
                 {u"Drag && drop", u"Drag|drop"},
                 {u"%1 of %2$s: 5 %d, {name} mp3", u"of"},
                 {u"see https://a.example/some?x=y or www.b.example", u"see|or"},
                 {u"to me.too@c.example now", u"to|now"},
                 {u"don\u2019t 'quote' Straße", u"don't|quote|Straße"},
                 {u"Schiff\u00ADfahrt \u0645\u06CC\u200C\u0634\u0648\u062F",
                  u"Schifffahrt|\u0645\u06CC\u200C\u0634\u0648\u062F"}};
    for (const auto& c : cases) {
        const QString line = QString::fromUtf16(c.Line);
        QStringList words;
        for (const Word& word : WordsIn(line))
            words += word.Text;
        EXPECT_EQ(words.join('|'), QString::fromUtf16(c.Words));
    }
    const std::vector<Word> words = WordsIn("a &Fi&le");
    ASSERT_EQ(words.size(), 2u);
    EXPECT_EQ(words[1].Start, 3);
    EXPECT_EQ(words[1].Length, 5);
}

TEST_F(Spelling, DictionariesMayHaveAnEncodingOfTheirOwn) {
    AddDictionary("de_DE",
                  "\xDC"
                  "bung",
                  "ISO8859-1");
    AddDictionary("ru_RU", "\xF1\xEB\xEE\xE2\xEE", "microsoft-cp1251");
    const SpellChecker german(mFolder.filePath("de_DE")), russian(mFolder.filePath("ru_RU"));
    EXPECT_TRUE(german.IsCorrect(QStringLiteral("Übung")));
    EXPECT_FALSE(german.IsCorrect(QStringLiteral("слово")));
    EXPECT_TRUE(russian.IsCorrect(QStringLiteral("слово")));
    EXPECT_EQ(german.Suggestions(QStringLiteral("Übnug")), QStringList(QStringLiteral("Übung")));
}

TEST_F(Spelling, UnknownWordsAreMarkedAfterTheEvent) {
    OpenWith("kleine Dadei\nSchrift");
    int changes = 0;
    Small->Area.TextChange = [&] {
        ++changes;
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return Marked() == QStringList("Dadei"); }));
    EXPECT_EQ(changes, 0);

    Small->Area.SetFocus();
    Settle();
    Edit().moveCursor(QTextCursor::End);
    QTest::keyClicks(&Edit(), "en Dadei ");
    EXPECT_EQ(Marked(), (QStringList{"Dadei", "Dadei"}));  // known by now; new words wait
    ASSERT_TRUE(QTest::qWaitFor([&] { return Marked().contains("Schriften"); }));
    EXPECT_EQ(changes, 9);
    Small->Area.SetSpellingLanguage("xx");
    Settle();
    EXPECT_EQ(Marked(), QStringList());
    EXPECT_EQ(Small->Area.Text(), "kleine Dadei\nSchriften Dadei ");

    Small->Area.SetText("");
    Small->Area.SetSpellingLanguage("de");
    Settle();
    Small->Area.SetText("Dadei kleine");  // the dictionary waits for it
    EXPECT_TRUE(QTest::qWaitFor([&] { return Marked() == QStringList("Dadei"); }));
}

TEST_F(Spelling, LongTextsAreCheckedToTheEnd) {
    String text;
    for (int line = 0; line < 1200; ++line)
        text += "kleine Dadei und so\n";
    OpenWith(text.c_str());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !Marked().isEmpty(); }));
    for (int turn = 0; turn < 20'000 && Marked().size() < 3600; ++turn)
        Settle();
    EXPECT_EQ(Marked().size(), 3600);
    QTextCursor cursor(Edit().document());
    cursor.setPosition(7 * 20, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    EXPECT_EQ(Marked().size(), 3579);
}

TEST_F(Spelling, ASuggestionIsAnEditOfTheUser) {
    App.MenuBar = std::make_unique<MenuBar>();
    App.MenuBar->Append(std::make_unique<MenuItem>("EditMenu", "&Edit"))
        .Append(std::make_unique<MenuItem>("EditUndo", "&Undo"));
    OpenWith("kleine &Da&dei");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !Marked().isEmpty(); }));
    QTextCursor cursor = Edit().textCursor();
    cursor.setPosition(9);
    Edit().setTextCursor(cursor);
    Small->Area.SetFocus();
    Settle();
    Answer([](QWidget& menu) {
        QStringList texts;
        for (const QAction* action : menu.actions())
            texts += action->text();
        EXPECT_EQ(texts, (QStringList{"Da&&tei", "", "&Undo"}));
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    QTest::keyClick(&Edit(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(Small->Area.Text(), "kleine &Da&tei");

    Small->Area.SetText("kleine Dadei");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !Marked().isEmpty(); }));
    Edit().setTextCursor(cursor);
    Answer([this](QWidget& menu) {
        Small->Area.SetText("Schrift kleine");
        Settle();
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    QTest::keyClick(&Edit(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(Small->Area.Text(), "Schrift kleine");  // the word is gone
}

}  // namespace sorbel
