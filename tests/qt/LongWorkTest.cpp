// What reaches the program, and what does not, while it looks for Escape in the midst of long work.
#include <QCloseEvent>
#include <QMouseEvent>
#include <QTextEdit>
#include <QWindow>

#include "Screen.h"
#include "qt/Desktop.h"

namespace sorbel {

class LongWork : public Screen {
  protected:
    LongWork() { Open(); }
    /// As if it had come from the user: it waits with what else waits.
    void Post(QEvent* event) { QCoreApplication::postEvent(View->windowHandle(), event); }
    void PostKey(int key, const QString& text = {}) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            Post(new QKeyEvent(type, key, Qt::NoModifier, text));
    }
    void PostClick(const QWidget& widget) {
        const QPointF at = widget.mapTo(View, widget.rect().center());
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            Post(new QMouseEvent(type, at, View->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, {}));
    }
};

TEST_F(LongWork, DropsWhatTheUserDoes) {
    Small->Area.SetText("a");
    Small->Area.SetFocus();
    Settle();
    const QWidget& field = On<QWidget>(Small->Field);
    PostKey(Qt::Key_B, QStringLiteral("b"));
    PostClick(field);
    Post(new QCloseEvent);
    EXPECT_FALSE(Backend.LookForEscape());
    Settle();
    EXPECT_EQ(Small->Area.Text(), "a");
    EXPECT_EQ(Small->Focus(), &Small->Area);
    EXPECT_EQ(App.WindowCount(), 1);
    // Nothing of it is left behind either.
    PostKey(Qt::Key_C, QStringLiteral("c"));
    PostClick(field);
    Settle();
    EXPECT_EQ(Small->Area.Text(), "ac");
    EXPECT_EQ(Small->Focus(), &Small->Field);
}

TEST_F(LongWork, SeesEscapeOnce) {
    PostKey(Qt::Key_A, QStringLiteral("a"));
    PostKey(Qt::Key_Escape);
    EXPECT_TRUE(Backend.LookForEscape());
    EXPECT_FALSE(Backend.LookForEscape());
    EXPECT_EQ(Small->Keys, "");
}

TEST_F(LongWork, ShowsWhatHasChanged) {
    Small->Area.SetText("shown");
    EXPECT_FALSE(Backend.LookForEscape());
    EXPECT_EQ(On<QTextEdit>(Small->Area).toPlainText(), QStringLiteral("shown"));
}

TEST_F(LongWork, LetsRequestsAndOtherWindowsWait) {
    const auto other = std::make_shared<SmallWindow>(App);
    other->Show();
    Settle();
    App.BringToFront(*Small);
    Settle();
    ASSERT_EQ(App.FrontWindow(), Small.get());
    int served = 0;
    Desktop::The().WhenFree(Backend, [&served] { ++served; });
    auto gone = std::make_unique<QObject>();
    Desktop::The().WhenFree(*gone, [&served] { served += 100; });
    Backend.ViewOf(other.get())->activateWindow();
    for (int round = 0; round < 3; ++round) {
        EXPECT_FALSE(Backend.LookForEscape());
        gone.reset();
    }
    EXPECT_EQ(served, 0);
    EXPECT_EQ(App.FrontWindow(), Small.get());
    Settle();
    EXPECT_EQ(served, 1);
    EXPECT_EQ(App.FrontWindow(), other.get());
    Settle();
    EXPECT_EQ(served, 1);
}

}  // namespace sorbel
