#include <QDir>
#include <QStandardPaths>

#include "platform/FileSizeSignal.h"
#include "platform/SpecialFolder.h"
#include "qt/CommandLine.h"
#include "qt/Desktop.h"
#include "qt/DesktopAppearance.h"
#include "qt/QtBackend.h"
#include "qt/SessionBus.h"
#include "qt/StartMessages.h"
#include "qt/Text.h"
#include "shell/Start.h"

namespace {

/// The data folder lies beside that of the program, in the build tree as in an installed one.
void SetFolders() {
    const QDir resources(QCoreApplication::applicationDirPath() +
                         QStringLiteral("/../share/sorbel/Resources"));
    sorbel::SpecialFolder::SetResources(sorbel::FromQt(resources.absolutePath()));
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    (void)QDir().mkpath(documents);  // a new home may have none yet, and the scripts want to lie there
    sorbel::SpecialFolder::SetDocuments(sorbel::FromQt(documents));
    sorbel::SpecialFolder::SetState(sorbel::SpecialFolder::UsualState());
}

/// The toolkit's application object; without a display the program ends here.
std::unique_ptr<sorbel::Desktop> MakeDesktop(sorbel::CommandLine& commandLine) {
    const sorbel::StartMessages messages;
    return std::make_unique<sorbel::Desktop>(commandLine.ToolkitCount(), commandLine.ToolkitWords());
}

}  // namespace

int main(int argc, char** argv) {
    sorbel::SurviveFileSizeLimit();
    sorbel::CommandLine commandLine(argc, argv);
    if (const std::optional<int> status = commandLine.Answer(SORBEL_VERSION)) return *status;
    const std::unique_ptr<sorbel::Desktop> desktop = MakeDesktop(commandLine);
    QCoreApplication::setApplicationName(QStringLiteral("Sorbel"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SORBEL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.sorbel.Sorbel"));
    const sorbel::SessionBus::Files files = commandLine.Files();
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
