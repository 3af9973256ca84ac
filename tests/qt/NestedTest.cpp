// Windows that go while a dialog, a modal window or a menu that came from them is still up.
#include <QContextMenuEvent>
#include <QMenuBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextEdit>

#include "Screen.h"
#include "platform/SpecialFolder.h"
#include "shell/Start.h"

namespace sorbel {

class Nested : public testing::Test {
  protected:
    Nested() {
        SpecialFolder::SetResources(SORBEL_BUILD_RESOURCES);
        SpecialFolder::SetDocuments(FromQt(mDocuments.path()));
        App = MakeApplication(Backend);
        Backend.Serve(*App);
    }
    void Start(const std::vector<std::shared_ptr<FolderItem>>& files = {}) {
        App->Start(files);
        Front = App->FrontWindow();
        View = Backend.ViewOf(Front);
        View->activateWindow();
        QObject::connect(View, &QObject::destroyed, [this] { EXPECT_FALSE(Running); });
        Settle();
    }
    static void Settle() { QCoreApplication::processEvents(); }
    /// Something that goes on until what it has brought up has gone. The window has to be there as long.
    void Run(const std::function<void()>& act) {
        Running = true;
        act();
        Running = false;
        EXPECT_FALSE(View.isNull());
    }
    void HandOver() {
        App->OpenDocument(Document);
        EXPECT_EQ(App->FrontWindow()->Title(), "Notizbuch.kestrum_locale");
        EXPECT_FALSE(View->isVisible());
    }
    void ExpectGone() {
        Settle();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(View.isNull());
        EXPECT_EQ(App->WindowCount(), 1);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }

    QTemporaryDir mDocuments;
    std::shared_ptr<FolderItem> Document =
        std::make_shared<FolderItem>(SORBEL_SAMPLES "/Notizbuch.kestrum_locale");
    QtBackend Backend;
    std::unique_ptr<Application> App;
    Window* Front = nullptr;
    QPointer<QtWindow> View;
    bool Running = false;
};

TEST_F(Nested, ADocumentComesWhileTheOpenCommandAsks) {
    Start();
    Answer([this](QWidget&) { HandOver(); });
    Run([this] {
        qt_handleKeyEvent(View->windowHandle(), QEvent::KeyPress, Qt::Key_O, Qt::ControlModifier);
    });
    ExpectGone();
}

TEST_F(Nested, ADocumentComesWhileTheLaunchWindowsButtonAsks) {
    Start();
    Answer([this](QWidget&) { HandOver(); });
    Run([this] { QTest::mouseClick(View->findChild<QPushButton*>(), Qt::LeftButton); });
    ExpectGone();
}

TEST_F(Nested, ADocumentComesWhileAboutIsUp) {
    Start();
    QMenu& menu = *View->menuBar()->actions().last()->menu();
    menu.popup(QPoint(0, 0));
    QTest::keyClick(&menu, Qt::Key_Up);
    Answer([this](QWidget&) {
        HandOver();
        Answer([](QWidget& about) { QTest::keyClick(&about, 'x'); });
    });
    Run([&menu] { QTest::keyClick(&menu, Qt::Key_Return); });
    ExpectGone();
}

TEST_F(Nested, AWindowGoesWhileItsMenuIsUp) {
    App->Start({Document});
    Start({Document});
    Answer([this](QWidget&) { Front->UserClose(); });
    Run([this] {
        auto& field = *View->findChild<QTextEdit*>("DefaultValueFieldLong");
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), field.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&field, &event);
    });
    ExpectGone();
}

}  // namespace sorbel
