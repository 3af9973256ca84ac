#include <QMessageBox>

#include "Screen.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

class Messages : public Screen {
  protected:
    Messages() { Open(); }
    struct Seen {
        QMessageBox::Icon Icon = QMessageBox::NoIcon;
        QString Title;
        int RoomForTitle = 0;
    };
    template <typename Show>
    static Seen During(const Show& show) {
        Seen seen;
        Answer([&](QWidget& widget) {
            auto& box = dynamic_cast<QMessageBox&>(widget);
            const QFontMetrics letters(box.font());
            seen = {box.icon(), box.windowTitle(),
                    box.width() - letters.horizontalAdvance(box.windowTitle())};
            box.close();
        });
        show();
        return seen;
    }
    Seen Asking(MessageDialog::Kind kind, Window* within) {
        MessageDialog question;
        question.Message = "Well?";
        question.Type = kind;
        question.CancelButton.Visible = true;
        return During([&] { Backend.Show(question, within); });
    }
};

TEST_F(Messages, HaveTheIconOfTheirKindAndTellWhoseTheyAre) {
    Small->SetTitle("de.kestrum_locale");
    const Seen sheet = Asking(MessageDialog::Kind::Question, Small.get());
    EXPECT_EQ(sheet.Icon, QMessageBox::Question);
    EXPECT_EQ(sheet.Title, "de.kestrum_locale");
    const Seen caution = Asking(MessageDialog::Kind::Caution, nullptr);
    EXPECT_EQ(caution.Icon, QMessageBox::Warning);
    EXPECT_EQ(caution.Title, QCoreApplication::applicationName());
    const Seen failure = During([&] { Backend.MsgBox("It failed."); });
    EXPECT_EQ(failure.Icon, QMessageBox::Critical);
    EXPECT_EQ(failure.Title, QCoreApplication::applicationName());
}

TEST_F(Messages, ALongTitleIsNotCutByItsWindow) {
    const int buttons = 5 * QFontMetrics(QApplication::font()).height();
    Small->SetTitle("Handbook, 2nd part.kestrum_locale");
    const Seen asked = Asking(MessageDialog::Kind::Question, Small.get());
    EXPECT_EQ(asked.Title.toStdString(), Small->Title());
    EXPECT_GE(asked.RoomForTitle, buttons);

    Small->SetTitle(String(300, 'x') + ".kestrum_locale");
    const Seen endless = Asking(MessageDialog::Kind::Question, Small.get());
    EXPECT_TRUE(endless.Title.endsWith(".kestrum_locale")) << endless.Title.toStdString();
    EXPECT_GE(endless.RoomForTitle, buttons);
}

}  // namespace sorbel
