#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include "platform/SpecialFolder.h"
#include "qt/QtBackend.h"
#include "qt/Text.h"
#include "shell/Start.h"

namespace {

/// The data folder of the installed program, or that of the build tree for a program that was only built.
void SetFolders() {
    const QDir installed(QCoreApplication::applicationDirPath() +
                         QStringLiteral("/../share/sorbel/Resources"));
    sorbel::SpecialFolder::SetResources(installed.exists() ? sorbel::FromQt(installed.absolutePath())
                                                           : SORBEL_BUILD_RESOURCES);
    sorbel::SpecialFolder::SetDocuments(
        sorbel::FromQt(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)));
}

}  // namespace

int main(int argc, char** argv) {
    QApplication desktop(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Sorbel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SORBEL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.sorbel.Sorbel"));
    SetFolders();

    sorbel::QtBackend backend;
    const auto app = sorbel::MakeApplication(backend);
    backend.Serve(*app);
    std::vector<std::shared_ptr<sorbel::FolderItem>> files;
    for (const QString& argument : QCoreApplication::arguments().mid(1))
        files.push_back(sorbel::FileFromQt(argument));
    app->Start(files);
    return QApplication::exec();
}
