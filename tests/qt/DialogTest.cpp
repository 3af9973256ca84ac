#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>

#include "Screen.h"
#include "platform/FileType.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

/// Files of a type "Locale" in two folders.
class Dialogs : public Screen {
  protected:
    Dialogs() {
        FileType::Register({{"Locale", ".loc", {}, {}, {}, true, {}, {}}});
        for (const char* name : {"one/de.loc", "one/readme.md", "two/fr.loc"}) {
            QDir(Folder.path()).mkpath(QFileInfo(name).path());
            EXPECT_TRUE(QFile(Path(name)).open(QIODevice::WriteOnly));
        }
        Open();
    }
    [[nodiscard]] QString Path(const QString& name) const { return Folder.filePath(name); }
    void ShowDocument(const QString& name) { Small->SetRepresentedFile(FileFromQt(Path(name))); }

    struct Seen {
        QString Folder, Title;
        QStringList Filters;
    };
    /// Runs a file dialog in which a file is chosen, or none.
    template <typename Ask>
    Seen During(const Ask& ask, const QString& choose = {}) {
        Seen seen;
        Answer([&](QWidget& widget) {
            auto& dialog = dynamic_cast<QFileDialog&>(widget);
            seen = {dialog.directory().path(), dialog.windowTitle(), dialog.nameFilters()};
            if (!choose.isEmpty()) dialog.selectFile(choose);
            static_cast<QDialog&>(dialog).done(choose.isEmpty() ? QDialog::Rejected : QDialog::Accepted);
        });
        ask();
        return seen;
    }
    Seen Opening(const QString& choose = {}, bool onlyTypes = false) {
        OpenDialog dialog;
        dialog.Filter = "Locale";
        dialog.OnlyTypes = onlyTypes;
        return During([&] { (void)dialog.ShowModal(App); }, choose);
    }

    QTemporaryDir Folder;
};

TEST_F(Dialogs, BeginWhereTheDocumentIsElseWhereTheLastFileWas) {
    EXPECT_EQ(Opening().Folder, QDir::currentPath());
    ShowDocument("one/de.loc");
    EXPECT_EQ(Opening(Path("two/fr.loc")).Folder, Path("one"));
    EXPECT_EQ(Opening().Folder, Path("one"));

    const auto launch = std::make_shared<SmallWindow>(App);
    launch->Show();
    Settle();
    EXPECT_EQ(Opening().Folder, Path("one")) << "behind a window that has no file";

    Small->SetRepresentedFile(nullptr);
    EXPECT_EQ(Opening().Folder, Path("two"));
    ShowDocument("gone/de.loc");
    EXPECT_EQ(Opening().Folder, Path("two"));
    QDir(Path("two")).removeRecursively();
    EXPECT_EQ(Opening().Folder, QDir::currentPath());
}

TEST_F(Dialogs, AnExportIsCalledSoAndBeginsThereToo) {
    ShowDocument("one/de.loc");
    std::shared_ptr<FolderItem> chosen;
    const Seen seen =
        During([&] { chosen = Backend.AskSaveFile("Locale", "de.loc.txt"); }, Path("two/new.loc"));
    EXPECT_EQ(seen.Folder, Path("one"));
    EXPECT_EQ(seen.Title, "Export");
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->NativePath(), FromQt(Path("two/new.loc")));
    Small->SetRepresentedFile(nullptr);
    EXPECT_EQ(Opening().Folder, Path("two"));
}

TEST_F(Dialogs, AllFilesAreOfferedUnlessOnlySomeTypesFit) {
    EXPECT_EQ(Opening().Filters, QStringList({"Locale (*.loc)", "All Files (*)"}));
    EXPECT_EQ(Opening({}, true).Filters, QStringList("Locale (*.loc)"));
}

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
