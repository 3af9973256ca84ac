// A user does not wait for the screen. Every pair of the things that one does is done twice, with turns of
// the event loop between and without one, and has to come to the same.
#include <QAccessible>
#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QMimeData>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <set>
#include <span>

#include "Screen.h"
#include "editing/MainWindow.h"
#include "platform/Clock.h"
#include "platform/SpecialFolder.h"
#include "shell/Start.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {
namespace {

/// Carries out what comes to the program by an event that is none of a widget's, as requests of assistive
/// technology do.
class Messenger : public QObject {
  public:
    void Deliver(std::function<void()> request) {
        mRequest = std::move(request);
        QEvent event(QEvent::User);
        QCoreApplication::sendEvent(this, &event);
    }

  protected:
    void customEvent(QEvent*) override { mRequest(); }

  private:
    std::function<void()> mRequest;
};

LocalizedStringSet& Document() {
    static const std::shared_ptr<LocalizedStringSet> set = [] {
        auto made = std::make_shared<LocalizedStringSet>();
        made->Language = "de";
        made->AddEntry(PlatformAny, "kAbout", "About", "alpha");
        made->AddEntry(PlatformWindows, "kAbout", "About it", "");
        made->AddEntry(PlatformAny, "kBack", "Back", "beta");
        made->AddEntry(PlatformAny, "kCopy", "Copy", "alpha");  // the text of another row
        made->AddEntry(PlatformAny, "kCut", "Cut", "");
        made->AddEntry(PlatformAny, "kDrag", "Drag\nand drop", "Ziehen\r\nund ablegen");
        auto version = std::make_shared<LocalizedStringSet>();
        version->DateGenerated->SetSQLDateTime("2005-03-01 10:00:00");
        version->AddEntry(PlatformAny, "kAbout", "About", "");
        version->AddEntry(PlatformAny, "kDrag", "Drag", "");
        made->History.push_back(version);
        return made;
    }();
    return *set;
}

class EarlyKeys : public testing::TestWithParam<size_t> {
  public:
    EarlyKeys() {
        SpecialFolder::SetResources(SORBEL_BUILD_RESOURCES);
        SpecialFolder::SetDocuments(FromQt(mFolder.path()));
        Clock::Install(&mTime);
        mApp = MakeApplication(mBackend);
        mBackend.Serve(*mApp);
        Document().WriteFile(*mOther);
    }
    ~EarlyKeys() override { Clock::Install(nullptr); }

    using Step = void (EarlyKeys::*)();
    struct Action {
        const char* Name;
        Step Do;
    };
    static std::span<const Action> Actions();

  protected:
    /// What comes of two actions on a fresh document whose first translation has the focus.
    String Outcome(Step first, Step second, bool turns);

  private:
    static void Turns() {
        for (int turn = 0; turn < 4; ++turn)
            QCoreApplication::processEvents();
    }
    void Open();
    void Close();
    template <typename Widget>
    Widget& On(Control& control) {
        return dynamic_cast<Widget&>(mView->ViewOf(control)->Widget());
    }

    // --- Ways of input, as the window system gives it ---
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            qt_handleKeyEvent(mView->windowHandle(), type, key, modifiers, text);
    }
    void Command(Qt::Key key, Qt::KeyboardModifiers more = {}) { Key(key, Qt::ControlModifier | more); }
    void Click(QWidget& widget, QPoint at) {
        const QPoint local = widget.mapTo(mView, at), global = widget.mapToGlobal(at);
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            qt_handleMouseEvent(mView->windowHandle(), local, global,
                                type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                                Qt::LeftButton, type, {}, static_cast<int>(++mMouseTime * 1000));
    }
    void ClickRow(int row, int x = 60) {
        auto& list = On<QListView>(mWindow->ListBox1);
        Click(*list.viewport(), {x, row * RowHeight() + RowHeight() / 2});
    }
    int RowHeight() {
        auto& list = On<QListView>(mWindow->ListBox1);
        return list.visualRect(list.model()->index(0, 0)).height();
    }
    void Drop(const QMimeData& data) {
        QWidget& target = *On<QTextEdit>(mWindow->LocalizedValueField).viewport();
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &enter);
        QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &drop);
    }
    QAccessibleInterface& Read(Control& control) {
        return *QAccessible::queryAccessibleInterface(&On<QWidget>(control));
    }

    // --- Actions ---
    void TypeLetter() { Key(Qt::Key_X, {}, "x"); }
    void BreakLine() { Key(Qt::Key_Return, {}, "\r"); }
    void DeleteLetter() { Key(Qt::Key_Backspace); }
    void GoToEnd() { Key(Qt::Key_End); }
    void MoveDown() { Key(Qt::Key_Down); }
    void Paste() { Command(Qt::Key_V); }
    void Cut() { Command(Qt::Key_X); }
    void Copy() { Command(Qt::Key_C); }
    void SelectAll() { Command(Qt::Key_A); }
    void Undo() { Command(Qt::Key_Z); }
    void Redo() { Command(Qt::Key_Z, Qt::ShiftModifier); }
    void Next() { Command(Qt::Key_BracketRight); }
    void Previous() { Command(Qt::Key_BracketLeft); }
    void OnlyNonlocalized() { Command(Qt::Key_K); }
    void Save() { Command(Qt::Key_S); }
    void LeaveField() { Command(Qt::Key_Tab); }
    void GoBackAField() { Key(Qt::Key_Backtab, Qt::ShiftModifier); }
    void Search() {
        Key(Qt::Key_S, Qt::AltModifier);
        Key(Qt::Key_A, {}, "a");
    }
    void Clear() {
        for (QAction* action : mView->menuBar()->actions().at(1)->menu()->actions())
            if (action->text() == "Clear") action->trigger();
    }
    void Compose() {
        QInputMethodEvent done;
        done.setCommitString(QStringLiteral("\u304B"));
        if (QObject* const focus = QGuiApplication::focusObject()) QCoreApplication::sendEvent(focus, &done);
    }
    void ClickThirdRow() { ClickRow(2); }
    void ClickBelowRows() { ClickRow(15); }
    void OpenOrCloseFirst() { ClickRow(0, 8); }
    void ClickTranslation() { Click(*On<QTextEdit>(mWindow->LocalizedValueField).viewport(), {20, 8}); }
    void ChooseVersion() { QTest::keyClick(&On<QComboBox>(mWindow->HistoryFilter), Qt::Key_Down); }
    void DropText() {
        QMimeData data;
        data.setText("dropped");
        Drop(data);
    }
    void DropFile() {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(ToQt(mOther->NativePath()))});
        Drop(data);
        mView->activateWindow();
        Turns();  // the window system has to agree
    }
    void AssistInsert() {
        mMessenger.Deliver([this] {
            if (!mWindow->LocalizedValueField.Enabled()) return;
            Read(mWindow->LocalizedValueField).editableTextInterface()->insertText(0, "read");
        });
    }
    void AssistSelect() {
        mMessenger.Deliver([this] {
            if (QAccessibleInterface* const row = Read(mWindow->ListBox1).child(1))
                row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        });
    }

    // --- What has come of it ---
    String State();
    String TextState(QWidget& widget);
    String ListState();

    QTemporaryDir mFolder;
    ManualClock mTime;
    QtBackend mBackend;
    std::unique_ptr<Application> mApp;
    Messenger mMessenger;
    std::shared_ptr<FolderItem> mFile =
        std::make_shared<FolderItem>(FromQt(mFolder.filePath("de.kestrum_locale")));
    std::shared_ptr<FolderItem> mOther =
        std::make_shared<FolderItem>(FromQt(mFolder.filePath("other.kestrum_locale")));
    MainWindow* mWindow = nullptr;
    QtWindow* mView = nullptr;
    int mMouseTime = 0;
};

std::span<const EarlyKeys::Action> EarlyKeys::Actions() {
    static constexpr Action actions[] = {
        {"type", &EarlyKeys::TypeLetter},
        {"line break", &EarlyKeys::BreakLine},
        {"backspace", &EarlyKeys::DeleteLetter},
        {"end", &EarlyKeys::GoToEnd},
        {"down", &EarlyKeys::MoveDown},
        {"paste", &EarlyKeys::Paste},
        {"cut", &EarlyKeys::Cut},
        {"copy", &EarlyKeys::Copy},
        {"select all", &EarlyKeys::SelectAll},
        {"clear", &EarlyKeys::Clear},
        {"undo", &EarlyKeys::Undo},
        {"redo", &EarlyKeys::Redo},
        {"next", &EarlyKeys::Next},
        {"previous", &EarlyKeys::Previous},
        {"only non-localized", &EarlyKeys::OnlyNonlocalized},
        {"save", &EarlyKeys::Save},
        {"leave field", &EarlyKeys::LeaveField},
        {"back a field", &EarlyKeys::GoBackAField},
        {"search", &EarlyKeys::Search},
        {"compose", &EarlyKeys::Compose},
        {"click row", &EarlyKeys::ClickThirdRow},
        {"click below", &EarlyKeys::ClickBelowRows},
        {"open or close", &EarlyKeys::OpenOrCloseFirst},
        {"click translation", &EarlyKeys::ClickTranslation},
        {"version", &EarlyKeys::ChooseVersion},
        {"drop text", &EarlyKeys::DropText},
        {"drop file", &EarlyKeys::DropFile},
        {"insert by assistant", &EarlyKeys::AssistInsert},
        {"select by assistant", &EarlyKeys::AssistSelect},
    };
    return actions;
}

void EarlyKeys::Open() {
    Document().WriteFile(*mFile);
    mApp->OpenDocument(mFile);
    mWindow = dynamic_cast<MainWindow*>(mApp->FrontWindow());
    mView = mBackend.ViewOf(mWindow);
    mView->activateWindow();
    mWindow->ListBox1.UserClick(0, 60, 1);
    mWindow->LocalizedValueField.SetFocus();
    Turns();
    GoToEnd();  // where the next row does not begin
    QGuiApplication::clipboard()->setText("zz");
}

void EarlyKeys::Close() {
    if (MenuItem& item = *mApp->MenuBar->FindByName("LocalizationOnlyShowNonlocalizedStrings"); item.Checked)
        item.Checked = false;
    while (auto* const window = dynamic_cast<MainWindow*>(mApp->FrontWindow())) {
        window->IsDirty = false;
        window->UserClose();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

String EarlyKeys::Outcome(Step first, Step second, bool turns) {
    Open();
    for (const Step step : {first, second}) {
        mTime.Advance(100);  // two edits are two steps of undo
        (this->*step)();
        if (turns) Turns();
    }
    Turns();
    const String state = State();
    Close();
    return state;
}

String EarlyKeys::TextState(QWidget& widget) {
    if (const auto* edit = dynamic_cast<QTextEdit*>(&widget)) {
        const QTextCursor at = edit->textCursor();
        return FromQt(edit->toPlainText()) + " @" + std::to_string(at.anchor()) + "-" +
               std::to_string(at.position()) + " ^" + std::to_string(edit->verticalScrollBar()->value());
    }
    if (const auto* edit = dynamic_cast<QLineEdit*>(&widget))
        return FromQt(edit->text()) + " @" + std::to_string(edit->cursorPosition()) + " " +
               FromQt(edit->selectedText());
    if (const auto* label = dynamic_cast<QLabel*>(&widget)) return FromQt(label->text());
    if (const auto* box = dynamic_cast<QComboBox*>(&widget)) return FromQt(box->currentText());
    return {};
}

String EarlyKeys::ListState() {
    Listbox& list = mWindow->ListBox1;
    auto& view = On<QListView>(list);
    String state = "selected " + std::to_string(view.currentIndex().row()) + ", first " +
                   std::to_string(view.verticalScrollBar()->value()) + ", clicked " +
                   mWindow->lastSelectedItem + "\n";
    for (int row = 0; row < view.model()->rowCount(); ++row)
        state += list.Cell(row) + " | " +
                 FromQt(view.model()->index(row, 0).data(Qt::AccessibleTextRole).toString()) +
                 (list.Expanded(row) ? " open\n" : "\n");
    return state;
}

String EarlyKeys::State() {
    mApp->Perform([this] { mApp->EnableMenuItems(); });
    On<QListView>(mWindow->ListBox1).viewport()->repaint();  // typing alone leaves a row as it was painted
    String state = ListState();
    for (Control* control : mWindow->Controls()) {
        QWidget& widget = On<QWidget>(*control);
        state += control->Name() + (widget.isEnabled() ? "" : " disabled") +
                 (widget.isVisible() ? "" : " hidden") + (widget.hasFocus() ? " focus" : "") + ": " +
                 TextState(widget) + "\n";
    }
    for (const char* name : {"EditUndo", "EditRedo", "FileSave"})
        state += String(name) + (mApp->MenuBar->FindByName(name)->Enabled ? " yes\n" : " no\n");
    state += "clipboard " + FromQt(QGuiApplication::clipboard()->text()) + ", windows " +
             std::to_string(mApp->WindowCount()) + (mView->isWindowModified() ? ", modified" : "") + "\n";
    return state + mWindow->StringSet->ToBytes() + "saved " + String(ReadContents(*mFile)->View());
}

TEST_P(EarlyKeys, ComeToTheSameAsWithTurnsOfTheLoop) {
    const Action& first = Actions()[GetParam()];
    std::set<String> outcomes;
    for (const Action& second : Actions()) {
        const String expected = Outcome(first.Do, second.Do, true);
        outcomes.insert(expected);
        EXPECT_EQ(Outcome(first.Do, second.Do, false), expected) << first.Name << ", " << second.Name;
    }
    EXPECT_GT(outcomes.size(), Actions().size() / 3);  // the actions do something
}

INSTANTIATE_TEST_SUITE_P(Actions, EarlyKeys, testing::Range(size_t{0}, EarlyKeys::Actions().size()),
                         [](const auto& action) {
                             String name = EarlyKeys::Actions()[action.param].Name;
                             std::erase_if(name, [](char c) { return c == ' ' || c == '-'; });
                             return name;
                         });

}  // namespace
}  // namespace sorbel
