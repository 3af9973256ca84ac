#include <QAccessible>
#include <QComboBox>
#include <QDropEvent>
#include <QFileOpenEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <QListView>

#include "Screen.h"
#include "platform/SpecialFolder.h"
#include "shell/Start.h"
#include "support/TemporaryFolder.h"

namespace sorbel {

/// Counts events of one type that reach a widget.
class Counter : public QObject {
  public:
    Counter(QWidget& watched, QEvent::Type type) : mType(type) { watched.installEventFilter(this); }
    int Take() { return std::exchange(mCount, 0); }

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == mType) ++mCount;
        return false;
    }

  private:
    QEvent::Type mType;
    int mCount = 0;
};

/// The whole program with a document.
class Program : public testing::Test {
  protected:
    Program() {
        SpecialFolder::SetResources(SORBEL_BUILD_RESOURCES);
        SpecialFolder::SetDocuments(FromQt(mDocuments.path()));
        mApp = MakeApplication(Backend);
        Backend.Serve(*mApp);
        mApp->Start({std::make_shared<FolderItem>(SORBEL_SAMPLES "/Notizbuch.kestrum_locale")});
        mWindow = mApp->FrontWindow();
        View = Backend.ViewOf(mWindow);
        View->activateWindow();
        Settle();
    }
    static void Settle() { QCoreApplication::processEvents(); }
    [[nodiscard]] Control& Named(StringView name) const {
        for (Control* control : mWindow->Controls())
            if (control->Name() == name) return *control;
        throw std::out_of_range(String(name));
    }
    [[nodiscard]] Listbox& List() const { return dynamic_cast<Listbox&>(Named("ListBox1")); }
    [[nodiscard]] QWidget& On(StringView name) const { return View->ViewOf(Named(name))->Widget(); }
    [[nodiscard]] QAccessibleInterface& Read(StringView name) const {
        return *QAccessible::queryAccessibleInterface(&On(name));
    }
    void Focus(StringView name) {
        Named(name).SetFocus();
        Settle();
    }

    QTemporaryDir mDocuments;
    QtBackend Backend;
    std::unique_ptr<Application> mApp;
    Window* mWindow = nullptr;
    QtWindow* View = nullptr;
};

/// Whether a widget of one line shows the whole of its text.
bool HasRoom(const QWidget& widget, const QString& text) {
    const QFontMetrics metrics = widget.fontMetrics();
    return widget.height() >= metrics.height() && widget.width() >= metrics.horizontalAdvance(text);
}

TEST_F(Program, NothingIsCutAtAnySizeOfTheFont) {
    const QFont usual = QApplication::font();
    for (const int size : {9, 11, 13}) {  // for more the screen without a screen is too small
        QFont font = usual;
        font.setPointSize(size);
        QApplication::setFont(font);
        Settle();
        Settle();
        for (const auto* label : View->findChildren<QLabel*>()) {
            if (label->wordWrap()) continue;
            EXPECT_TRUE(HasRoom(*label, label->text())) << size << label->text().toStdString();
        }
        for (const auto* box : View->findChildren<QComboBox*>())
            EXPECT_TRUE(HasRoom(*box, box->currentText())) << size;
        for (const auto* field : View->findChildren<QLineEdit*>())
            EXPECT_TRUE(HasRoom(*field, {})) << size;
    }
    QApplication::setFont(usual);
}

TEST_F(Program, EveryControlSaysWhatItIs) {
    const struct {
        const char *Name, *Reads;
        QAccessible::Role Role;
    } controls[] = {
        {"ListBox1", "Strings", QAccessible::List},
        {"LocalizedValueField", "Translation", QAccessible::EditableText},
        {"DefaultValueFieldLong", "Default Value", QAccessible::EditableText},
        {"SearchField", "Search", QAccessible::EditableText},
        {"NameField", "Name", QAccessible::EditableText},
        {"SearchOptionsMenu", "Search Options", QAccessible::ButtonMenu},
        {"SimpleSplitter1", "Width of the Strings", QAccessible::Splitter},
        {"StaticText3", "Search:", QAccessible::StaticText},
    };
    for (const auto& control : controls) {
        EXPECT_EQ(Read(control.Name).role(), control.Role) << control.Name;
        EXPECT_EQ(Read(control.Name).text(QAccessible::Name), control.Reads);
    }
    for (const Control* control : mWindow->Controls())
        EXPECT_NE(Read(control->Name()).text(QAccessible::Name), "") << control->Name();
    EXPECT_TRUE(Read("DefaultValueFieldLong").state().readOnly);
    EXPECT_EQ(Read("HistoryFilter").role(), QAccessible::ComboBox);  // its name is what is chosen
    EXPECT_EQ(Read("HistoryFilter").text(QAccessible::Description), "Version");
}

TEST_F(Program, RowsAreReadWithTheirState) {
    QAccessibleInterface& list = Read("ListBox1");
    EXPECT_EQ(list.childCount(), List().ListCount());
    QAccessibleInterface* folder = list.child(1);
    EXPECT_EQ(list.indexOfChild(folder), 1);
    EXPECT_EQ(folder->role(), QAccessible::ListItem);
    EXPECT_EQ(folder->text(QAccessible::Name), ToQt(List().DescribeRow(1)));
    EXPECT_TRUE(folder->state().collapsed);
    EXPECT_FALSE(folder->state().selected);

    const int64_t rows = List().ListCount();
    folder->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    Settle();
    EXPECT_TRUE(folder->state().expanded);
    EXPECT_GT(list.childCount(), rows);
    QAccessibleInterface* platform = list.child(2);
    EXPECT_FALSE(platform->state().expandable);
    EXPECT_TRUE(platform->text(QAccessible::Name).contains(", "));

    Focus("ListBox1");
    platform->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    Settle();
    EXPECT_EQ(List().ListIndex(), 2);
    EXPECT_TRUE(platform->state().selected);
    EXPECT_EQ(list.focusChild(), platform);
    QTest::keyClick(&On("ListBox1"), Qt::Key_Up);
    Settle();
    EXPECT_EQ(list.focusChild(), folder);
    EXPECT_TRUE(folder->state().focused);
}

TEST_F(Program, FilesDroppedAnywhereAreOpened) {
    List().UserClick(0, 1, 1);
    Settle();
    const String translation = dynamic_cast<TextArea&>(Named("LocalizedValueField")).Text();
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(SORBEL_SAMPLES "/Notizbuch newer.kestrum_locale")});
    auto& field = dynamic_cast<QAbstractScrollArea&>(On("LocalizedValueField"));
    const QPoint at = field.viewport()->rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(field.viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(at, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(field.viewport(), &drop);
    Settle();
    EXPECT_EQ(mApp->FrontWindow()->Title(), "Notizbuch newer.kestrum_locale");
    EXPECT_EQ(dynamic_cast<TextArea&>(Named("LocalizedValueField")).Text(), translation);
}

TEST_F(Program, NamesThatAreNoTextAreOpened) {
    const TemporaryFolder folder;
    const auto fileNamed = [&](const String& name) {
        std::filesystem::copy_file(SORBEL_SAMPLES "/Notizbuch.kestrum_locale", folder / name);
        return QByteArray::fromStdString(ToUri(FolderItem(folder / name)));
    };
    QMimeData files;
    files.setData("text/uri-list", "http://example.org/a.nvl\r\n" + fileNamed("dropped \xFF.nvl") + "\r\n");
    const QPoint at(50, 50);
    QDragEnterEvent enter(at, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(View, &enter);
    QDropEvent drop(at, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(View, &drop);
    Settle();
    EXPECT_EQ(mApp->FrontWindow()->Title(), "dropped \xFF.nvl");
    EXPECT_EQ(Backend.ViewOf(mApp->FrontWindow())->windowTitle(), QStringLiteral("dropped \uFFFD.nvl[*]"));
    QFileOpenEvent open(QUrl::fromEncoded(fileNamed("given \xFF%41?#.nvl")));
    QApplication::sendEvent(qApp, &open);
    Settle();
    EXPECT_EQ(mApp->FrontWindow()->Title(), "given \xFF%41?#.nvl");
}

TEST_F(Program, TheWindowFollowsASplitterOncePerStep) {
    QWidget& splitter = On("SimpleSplitter1");
    Counter resized(On("ListBox1"), QEvent::Resize), moved(On("LocalizedValueField"), QEvent::Move);
    const QPoint start(4, 100);
    QTest::mousePress(&splitter, Qt::LeftButton, {}, start);
    for (const int step : {30, 20}) {
        const int width = List().Width();
        QTest::mouseMove(&splitter, start + QPoint(step, 0));
        EXPECT_EQ(List().Width(), width + step);
        EXPECT_EQ(resized.Take() + moved.Take(), 0);
        Settle();
        EXPECT_EQ(resized.Take(), 1);
        EXPECT_EQ(moved.Take(), 1);
    }
    QTest::mouseRelease(&splitter, Qt::LeftButton, {}, start);
}

TEST_F(Program, AKeyInTheSearchFieldRefreshesTheListOnce) {
    QAbstractItemModel& model = *dynamic_cast<QListView&>(On("ListBox1")).model();
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    Focus("SearchField");
    const int64_t all = List().ListCount();
    QTest::keyPress(&On("SearchField"), 'q');
    EXPECT_LT(List().ListCount(), all);
    EXPECT_EQ(resets.count(), 0);
    QTest::keyRelease(&On("SearchField"), 'q');  // finds the list as it is
    EXPECT_EQ(resets.count(), 1);
    Settle();
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(model.rowCount(), List().ListCount());
}

TEST_F(Program, AFieldThatIsDisabledForAWhileKeepsTheFocus) {
    List().UserClick(0, 1, 1);
    Focus("LocalizedValueField");
    QTest::keyClick(&On("LocalizedValueField"), 'x');
    mApp->Choose(*mApp->MenuBar->FindByName("EditUndo"));  // takes the selection away
    Settle();
    ASSERT_FALSE(On("LocalizedValueField").isEnabled());
    ASSERT_TRUE(On("ListBox1").hasFocus());  // meanwhile
    List().UserClick(0, 1, 1);
    Settle();
    EXPECT_TRUE(On("LocalizedValueField").hasFocus());
}

TEST_F(Program, SplittersAnswerToKeys) {
    Focus("SearchField");
    const int width = List().Width();
    QTest::keyClick(View, Qt::Key_F8);
    QStringList reached{QApplication::focusWidget()->objectName()};
    QTest::keyClick(View, Qt::Key_F8);
    reached += QApplication::focusWidget()->objectName();
    reached.sort();
    EXPECT_EQ(reached, (QStringList{"SimpleSplitter1", "SimpleSplitter2"}));
    QWidget& vertical = On("SimpleSplitter1");
    if (!vertical.hasFocus()) QTest::keyClick(View, Qt::Key_F8);
    QTest::keyClick(&vertical, Qt::Key_Right);
    Settle();
    EXPECT_GT(List().Width(), width);
    QTest::keyClick(&vertical, Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), &On("SearchField"));
}

TEST_F(Program, TabGoesFromFieldToField) {
    Focus("ListBox1");
    QStringList way;
    for (int step = 0; step < 12 && (way.isEmpty() || way.last() != "ListBox1"); ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        way += QApplication::focusWidget()->objectName();
    }
    EXPECT_EQ(way.join(' ').toStdString(),
              "DefaultValueFieldLong SearchField NameField HistoryFilter SearchOptionsMenu ListBox1");
}

}  // namespace sorbel
