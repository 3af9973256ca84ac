#include <QDir>
#include <QStandardPaths>

#include "platform/FileSizeSignal.h"
#include "platform/SpecialFolder.h"
#include "qt/Desktop.h"
#include "qt/DesktopAppearance.h"
#include "qt/QtBackend.h"
#include "qt/SessionBus.h"
#include "qt/Text.h"
#include "shell/Start.h"

namespace {

/// The data folder lies beside that of the program, in the build tree as in an installed one.
void SetFolders() {
    const QDir resources(QCoreApplication::applicationDirPath() +
                         QStringLiteral("/../share/sorbel/Resources"));
    sorbel::SpecialFolder::SetResources(sorbel::FromQt(resources.absolutePath()));
    sorbel::SpecialFolder::SetDocuments(
        sorbel::FromQt(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)));
    sorbel::SpecialFolder::SetState(sorbel::SpecialFolder::UsualState());
}

/// By the bytes of the command line, since a name need not be text.
sorbel::SessionBus::Files FilesOf(const std::vector<sorbel::String>& words) {
    sorbel::SessionBus::Files files;
    for (const sorbel::String& word : words)
        files.push_back(std::make_shared<sorbel::FolderItem>(word));
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    sorbel::SurviveFileSizeLimit();
    const sorbel::Desktop desktop(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Sorbel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SORBEL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.sorbel.Sorbel"));
    const sorbel::SessionBus::Files files = FilesOf({argv + 1, argv + argc});
    sorbel::SessionBus bus;
    if (const std::optional<int> status = bus.HandOver(files)) return *status;
    const sorbel::DesktopAppearance appearance(QDBusConnection::sessionBus());
    SetFolders();

    sorbel::QtBackend backend;
    backend.StaysWithoutWindows = bus.OwnsName();
    const auto app = sorbel::MakeApplication(backend);
    backend.Serve(*app);
    bus.Start(*app, files);
    return QApplication::exec();
}
