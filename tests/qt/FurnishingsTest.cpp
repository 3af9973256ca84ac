#include <gtest/gtest.h>

#include <QIcon>
#include <QTemporaryDir>

#include "Screen.h"
#include "platform/SpecialFolder.h"
#include "shell/Start.h"

namespace sorbel {

/// The whole program, for what a window has beside its controls.
class Furnishings : public testing::Test {
  protected:
    Furnishings() {
        SpecialFolder::SetResources(SORBEL_BUILD_RESOURCES);
        SpecialFolder::SetDocuments(FromQt(mDocuments.path()));
        mApp = MakeApplication(Backend);
        Backend.Serve(*mApp);
        mApp->Start({std::make_shared<FolderItem>(SORBEL_SAMPLES "/Notizbuch.kestrum_locale")});
        mWindow = mApp->FrontWindow();
        View = Backend.ViewOf(mWindow);
        QCoreApplication::processEvents();
    }
    ~Furnishings() override { QApplication::setWindowIcon({}); }

    QTemporaryDir mDocuments;
    QtBackend Backend;
    std::unique_ptr<Application> mApp;
    Window* mWindow = nullptr;
    QtWindow* View = nullptr;
};

TEST_F(Furnishings, TheWindowHasTheProgramsIcon) {
    const QIcon icon = View->windowIcon();
    for (const int size : {16, 24, 32, 48, 256}) {
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size))) << size;
        const QImage drawn = icon.pixmap(size).toImage();
        EXPECT_GT(drawn.pixelColor(size / 2, size / 2).alpha(), 200);
    }
}

}  // namespace sorbel
