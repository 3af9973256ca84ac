// What assistive technology reads of a document window, and what it can do there.
#include <QAccessible>
#include <QHelpEvent>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QToolTip>
#include <algorithm>

#include "Screen.h"
#include "editing/MainWindow.h"
#include "platform/SpecialFolder.h"
#include "shell/Start.h"

namespace sorbel {

class Assist : public testing::Test {
  protected:
    Assist() {
        SpecialFolder::SetResources(SORBEL_BUILD_RESOURCES);
        SpecialFolder::SetDocuments(FromQt(mDocuments.path()));
        mApp = MakeApplication(Backend);
        Backend.Serve(*mApp);
        mApp->OpenDocument(std::make_shared<FolderItem>(SORBEL_SAMPLES "/Notizbuch.kestrum_locale"));
        Document = dynamic_cast<MainWindow*>(mApp->FrontWindow());
        View = Backend.ViewOf(Document);
        View->activateWindow();
        Settle();
    }
    static void Settle() { QCoreApplication::processEvents(); }
    QWidget& On(const Control& control) { return View->ViewOf(control)->Widget(); }
    QAccessibleInterface& Read(const Control& control) {
        return *QAccessible::queryAccessibleInterface(&On(control));
    }
    void Select(int64_t row) {
        Document->ListBox1.UserSelect(row);
        Settle();
    }

    QTemporaryDir mDocuments;
    QtBackend Backend;
    std::unique_ptr<Application> mApp;
    MainWindow* Document = nullptr;
    QtWindow* View = nullptr;
};

TEST_F(Assist, TextsForReadingOnlyCannotBeChanged) {
    Select(0);
    const struct {
        const Control& Field;
        QString Text;
    } fields[] = {{Document->DefaultValueFieldLong, ToQt(Document->DefaultValueFieldLong.Text())},
                  {Document->NameField, ToQt(Document->NameField.Text())}};
    for (const auto& [field, shown] : fields) {
        QAccessibleInterface& reader = Read(field);
        ASSERT_GT(shown.size(), 3);
        EXPECT_TRUE(reader.state().readOnly);
        EXPECT_FALSE(reader.state().editable);
        EXPECT_EQ(reader.editableTextInterface(), nullptr);
        reader.setText(QAccessible::Value, QStringLiteral("changed"));
        QAccessibleTextInterface& text = *reader.textInterface();
        EXPECT_EQ(text.text(0, text.characterCount()), shown);
        EXPECT_EQ(reader.text(QAccessible::Value), shown);

        text.setSelection(0, 1, 3);
        int start = 0, end = 0;
        text.selection(0, &start, &end);
        EXPECT_EQ(text.selectionCount(), 1);
        EXPECT_EQ(text.text(start, end), shown.mid(1, 2));
        text.removeSelection(0);
        EXPECT_EQ(text.selectionCount(), 0);
        for (const int offset : {0, 2}) {
            const QRect there = text.characterRect(offset);
            EXPECT_TRUE(reader.rect().contains(there.center()));
            EXPECT_EQ(text.offsetAtPoint({there.left() + 1, there.center().y()}), offset);
        }
    }
    EXPECT_NE(Read(Document->LocalizedValueField).editableTextInterface(), nullptr);
}

TEST_F(Assist, ATextIsReadByTheLinesThatAreSeen) {
    const std::vector<String> seen{"one\u00A0more\n", String(20, 'a') + " ", String(20, 'b')};
    Document->DefaultValueFieldLong.SetText(Join(seen, ""));
    Settle();
    QAccessibleTextInterface& text = *Read(Document->DefaultValueFieldLong).textInterface();
    std::vector<String> lines;
    for (int start = 0, end = 0; end < text.characterCount();)
        lines.push_back(FromQt(text.textAtOffset(end, QAccessible::LineBoundary, &start, &end)));
    EXPECT_EQ(lines, seen);
}

TEST_F(Assist, LabelsNameTheirFields) {
    const std::pair<const Label&, const Control&> labels[] = {
        {Document->StaticText3, Document->SearchField},
        {Document->StaticText4, Document->NameField},
        {Document->DefaultValueLabel, Document->DefaultValueFieldLong},
        {Document->HistoryDefaultValueLabel, Document->HistoryDefaultValueFieldLong},
        {Document->TranslationText, Document->LocalizedValueField}};
    for (const auto& [label, field] : labels) {
        const auto ofField = Read(field).relations(QAccessible::Label);
        ASSERT_EQ(ofField.size(), 1) << field.Name();
        EXPECT_EQ(ofField[0].first->object(), &On(label));
        const auto ofLabel = Read(label).relations(QAccessible::Labelled);
        ASSERT_EQ(ofLabel.size(), 1) << label.Name();
        EXPECT_EQ(ofLabel[0].first->object(), &On(field));
    }
}

TEST_F(Assist, ALabelIsReadAsItIsSeen) {
    Document->TranslationText.SetText("Tea && Coffee &Translation:");
    Settle();
    EXPECT_EQ(Read(Document->TranslationText).text(QAccessible::Name), "Tea & Coffee Translation:");
    Document->SearchField.SetFocus();
    Settle();
    QTest::keyClick(View, Qt::Key_T, Qt::AltModifier);  // is the program's affair, which field or not
    EXPECT_EQ(Document->Focus(), &Document->TranslationText);
}

TEST_F(Assist, CheckItemsAreOnesWhetherOnOrOff) {
    const QPointer<QAction> filter = View->menuBar()->actions().at(3)->menu()->actions().at(0);
    QAccessibleInterface* const menu =
        QAccessible::queryAccessibleInterface(View->menuBar()->actions().at(3)->menu());
    QAccessibleInterface& item = *menu->child(0);
    for (const bool on : {false, true, false}) {
        EXPECT_TRUE(item.state().checkable);
        EXPECT_EQ(item.state().checked, on);
        filter->trigger();
        Settle();
        ASSERT_TRUE(filter);
    }

    std::vector<std::pair<bool, bool>> scopes;
    Document->NameChecked = false;
    Answer([&scopes](QWidget& popUp) {
        QAccessibleInterface& scopesMenu = *QAccessible::queryAccessibleInterface(&popUp);
        for (int index = 0; index < scopesMenu.childCount(); ++index) {
            const QAccessible::State state = scopesMenu.child(index)->state();
            scopes.emplace_back(state.checkable, state.checked);
        }
        popUp.close();
    });
    Document->SearchOptionsMenu.UserMouseDown(1, 1);
    EXPECT_EQ(scopes, (std::vector<std::pair<bool, bool>>{{true, false}, {true, true}, {true, true}}));
}

TEST_F(Assist, SplittersHaveValuesThatCanBeSet) {
    const struct {
        const SimpleSplitter& Splitter;
        std::function<int()> Position;
        Qt::Key Forth;
        int Least, Most;
    } splitters[] = {{Document->SimpleSplitter1, [this] { return Document->SimpleSplitter1.Left(); },
                      Qt::Key_Right, 104, 640 * 3 / 4 - 8},
                     {Document->SimpleSplitter2, [this] { return Document->SimpleSplitter2.Top(); },
                      Qt::Key_Down, 100, 480 - 60 - 8}};
    for (const auto& [splitter, position, forth, least, most] : splitters) {
        QAccessibleInterface& reader = Read(splitter);
        QAccessibleValueInterface& value = *reader.valueInterface();
        EXPECT_EQ(value.currentValue(), position());
        EXPECT_EQ(value.minimumValue(), least);
        EXPECT_EQ(value.maximumValue(), most);
        EXPECT_TRUE(reader.state().focusable);
        reader.actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        EXPECT_TRUE(reader.state().focused);

        const int before = position();
        QTest::keyClick(&On(splitter), forth);
        EXPECT_GT(position(), before);
        Settle();
        reader.actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
        EXPECT_EQ(position(), before);
        QTest::keyClick(&On(splitter), Qt::Key_End);
        EXPECT_EQ(position(), most);
        QTest::keyClick(&On(splitter), Qt::Key_Home);
        EXPECT_EQ(position(), least);
        value.setCurrentValue(before);
        EXPECT_EQ(position(), before);
        value.setCurrentValue(100000);
        EXPECT_EQ(value.currentValue(), most);
    }
    Settle();
    EXPECT_EQ(Document->ListBox1.Width(), 640 * 3 / 4 - 8 - 2 - 20);
}

TEST_F(Assist, ComparedTextsTellWhatWasAddedAndRemoved) {
    Document->HistoryFilter.UserChoose(1);
    Settle();
    Select(0);
    Document->DefaultValueFieldLong.SetText("");
    for (const auto& [text, kind] :
         {std::pair("Save ", RunKind::Common), std::pair("the\r\n\xF0\x9F\x8D\x90 note", RunKind::Added),
          std::pair(" as", RunKind::Common), std::pair(" you like", RunKind::Removed)}) {
        Document->DefaultValueFieldLong.SetSelKind(kind);  // all of one colour
        Document->DefaultValueFieldLong.SetSelText(text);
    }
    Settle();
    QAccessibleInterface& reader = Read(Document->DefaultValueFieldLong);
    EXPECT_EQ(reader.text(QAccessible::Description),
              QStringLiteral("added: the \U0001F350 note; removed: you like"));
    std::vector<String> told;
    QAccessibleTextInterface& text = *reader.textInterface();
    for (int start = 0, end = 0; end < text.characterCount();) {
        const String attributes = FromQt(text.attributes(end, &start, &end));
        told.push_back(FromQt(text.text(start, end)) + "|" + attributes);
    }
    EXPECT_EQ(told,
              (std::vector<String>{"Save |", "the\n\xF0\x9F\x8D\x90 note|text-tracked-change:insertion;",
                                   " as|", " you like|text-tracked-change:deletion;"}));

    Document->HistoryFilter.UserChoose(0);
    Select(0);
    EXPECT_EQ(reader.text(QAccessible::Description), "");
}

TEST_F(Assist, TheComparisonOfTwoVersionsIsToldOnBothSides) {
    Document->HistoryFilter.UserChoose(1);
    QStringList current, older;
    for (int64_t row = 0; row < Document->ListBox1.ListCount(); ++row) {
        Select(row);
        current += Read(Document->DefaultValueFieldLong).text(QAccessible::Description);
        older += Read(Document->HistoryDefaultValueFieldLong).text(QAccessible::Description);
    }
    EXPECT_TRUE(std::ranges::any_of(current, [](const QString& told) { return told.contains("added: "); }));
    EXPECT_TRUE(std::ranges::any_of(older, [](const QString& told) { return told.contains("removed: "); }));
    EXPECT_FALSE(current.join(' ').contains("removed: ") || older.join(' ').contains("added: "));
}

TEST_F(Assist, WindowAndTipTellTheProgress) {
    QAccessibleInterface& window = *QAccessible::queryAccessibleInterface(View);
    EXPECT_EQ(window.role(), QAccessible::Window);
    const LocalizedStringSet::Progress before = Document->StringSet->TranslationProgress();
    EXPECT_EQ(window.text(QAccessible::Description),
              QStringLiteral("%1 of %2 translated").arg(before.Translated).arg(before.Rows));
    Select(0);
    Document->LocalizedValueField.UserSetText("");
    Settle();
    const QString now = QStringLiteral("%1 of %2 translated").arg(before.Translated - 1).arg(before.Rows);
    EXPECT_EQ(window.text(QAccessible::Description), now);
    EXPECT_TRUE(window.text(QAccessible::Name).startsWith("Notizbuch.kestrum_locale"));

    QWidget& popUp = On(Document->HistoryFilter);
    const QPoint at(5, 5);
    QHelpEvent asked(QEvent::ToolTip, at, popUp.mapToGlobal(at));
    QCoreApplication::sendEvent(&popUp, &asked);
    EXPECT_TRUE(QToolTip::text().contains(now)) << QToolTip::text().toStdString();
}

}  // namespace sorbel
