#include "qt/SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFileInfo>
#include <QUrl>

#include "qt/Text.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

namespace {

const QString Name = QStringLiteral("org.sorbel.Sorbel");
const QString Path = QStringLiteral("/org/sorbel/Sorbel");
const QString Interface = QStringLiteral("org.freedesktop.Application");
const char* const ActivationToken = "XDG_ACTIVATION_TOKEN";

std::vector<std::shared_ptr<FolderItem>> Files(const QStringList& paths) {
    std::vector<std::shared_ptr<FolderItem>> files;
    for (const QString& path : paths)
        files.push_back(FileFromQt(path));
    return files;
}

/// What is no local file stays as it is, and opening it tells that it could not be opened.
QString PathOf(const QString& uri) {
    const QUrl url(uri);
    return url.isLocalFile() ? url.toLocalFile() : uri;
}

/// What lets the running program come to the front in place of the one that was started.
QVariantMap PlatformData() {
    const QString token = qEnvironmentVariable(ActivationToken);
    return token.isEmpty() ? QVariantMap() : QVariantMap{{QStringLiteral("activation-token"), token}};
}

}  // namespace

/// The object comes before the name, for requests may come as soon as the name is known.
SessionBus::SessionBus() : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, Name)) {
    mOwnsName = mBus.isConnected() &&
                mBus.registerObject(Path, this, QDBusConnection::ExportScriptableSlots) &&
                mBus.registerService(Name);
}

SessionBus::~SessionBus() {
    QDBusConnection::disconnectFromBus(Name);
}

bool SessionBus::HandOver(const QStringList& paths) const {
    if (mOwnsName || !mBus.isConnected()) return false;
    QStringList uris;
    for (const QString& path : paths)
        uris += QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toString(QUrl::FullyEncoded);
    QDBusMessage request = QDBusMessage::createMethodCall(
        Name, Path, Interface, uris.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
    if (!uris.isEmpty()) request << uris;
    request << PlatformData();
    return mBus.call(request).type() == QDBusMessage::ReplyMessage;
}

/// Where the bus started the program, the request that it did so for is handed out right after the name, so
/// it is here once anything else has been answered. It begins the work then, without a launch window.
void SessionBus::Start(Application& app, const QStringList& paths) {
    mApp = &app;
    if (mOwnsName) {
        (void)mBus.interface()->isServiceRegistered(Name);
        QCoreApplication::processEvents();
    }
    if (!mStarted) StartOnce(paths);
}

void SessionBus::StartOnce(const QStringList& paths) {
    mStarted = true;
    mApp->Start(Files(paths));
}

// --- What the bus asks for ---

void SessionBus::Activate(const QVariantMap& platformData) {
    Serve(platformData, [this] { ReopenOrStart(); });
}

void SessionBus::Open(const QStringList& uris, const QVariantMap& platformData) {
    QStringList paths;
    for (const QString& uri : uris)
        paths += PathOf(uri);
    Serve(platformData, [this, paths] { OpenOrStart(paths); });
}

void SessionBus::ActivateAction(const QString& name, const QVariantList& /*parameter*/,
                                const QVariantMap& /*platformData*/) {
    sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no action \"%1\".").arg(name));
}

/// A dialog may come of it, and who asked shall not wait for the user. Then the front window comes up.
void SessionBus::Serve(const QVariantMap& platformData, std::function<void()> request) {
    const QByteArray token = platformData.value(QStringLiteral("activation-token")).toByteArray();
    const auto serve = [this, token, request = std::move(request)] {
        if (!token.isEmpty()) qputenv(ActivationToken, token);  // taken from there by the next activation
        request();
        Window* const front = mApp->FrontWindow();
        if (front) mApp->Perform([this, front] { mApp->BringToFront(*front); });
    };
    QMetaObject::invokeMethod(this, serve, Qt::QueuedConnection);
}

void SessionBus::OpenOrStart(const QStringList& paths) {
    if (!mStarted) return StartOnce(paths);
    for (const auto& file : Files(paths))
        mApp->OpenDocument(file);
}

void SessionBus::ReopenOrStart() {
    if (!mStarted) return StartOnce({});
    mApp->Reopen();
}

}  // namespace sorbel
