#include "qt/SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <cstdlib>
#include <limits>

#include "qt/Desktop.h"
#include "qt/Text.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

namespace {

const QString Name = QStringLiteral("org.sorbel.Sorbel");
const QString Path = QStringLiteral("/org/sorbel/Sorbel");
const QString Interface = QStringLiteral("org.freedesktop.Application");
const char* const ActivationToken = "XDG_ACTIVATION_TOKEN";

/// What lets the running program come to the front in place of the one that was started.
QVariantMap PlatformData() {
    const QString token = qEnvironmentVariable(ActivationToken);
    return token.isEmpty() ? QVariantMap() : QVariantMap{{QStringLiteral("activation-token"), token}};
}

/// To the program that has the name; the bus shall not start one where there is none any more.
QDBusMessage RequestFor(const SessionBus::Files& files) {
    QStringList uris;
    for (const auto& file : files)
        uris += ToQt(ToUri(*file));
    QDBusMessage request = QDBusMessage::createMethodCall(
        Name, Path, Interface, uris.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
    if (!uris.isEmpty()) request << uris;
    request << PlatformData();
    request.setAutoStartService(false);
    return request;
}

/// The bus tells so at once when the program that has the request ends without an answer.
bool IsGone(const QDBusMessage& answer) {
    return answer.errorName().endsWith(QStringLiteral(".NoReply")) ||
           answer.errorName().endsWith(QStringLiteral(".NameHasNoOwner"));
}

}  // namespace

SessionBus::SessionBus() : mBus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, Name)) {
    mOwnsName = mBus.isConnected() && TakeName();
}

SessionBus::~SessionBus() {
    QDBusConnection::disconnectFromBus(Name);
}

/// The object comes before the name, for requests may come as soon as the name is known.
bool SessionBus::TakeName() {
    if (!mBus.registerObject(Path, this, QDBusConnection::ExportScriptableSlots)) return false;
    if (mBus.registerService(Name)) return true;
    mBus.unregisterObject(Path);
    return false;
}

/// A program that is busy may take any time. Meanwhile the event loop runs, to see an end of the session.
QDBusMessage SessionBus::Answer(const QDBusMessage& request) {
    constexpr int never = std::numeric_limits<int>::max();
    const QDBusPendingCallWatcher watcher(mBus.asyncCall(request, never));
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!watcher.isFinished()) loop.exec();
    return watcher.reply();
}

/// Where the other program ends before it has answered, it has not begun the work, and the name is free for
/// the first that takes it. One that refuses has the name all the same, and no second one may run beside it.
std::optional<int> SessionBus::HandOver(const Files& files) {
    while (!mOwnsName && mBus.isConnected()) {
        const QDBusMessage answer = Answer(RequestFor(files));
        if (answer.type() == QDBusMessage::ReplyMessage) return EXIT_SUCCESS;
        if (!mBus.isConnected()) break;
        mOwnsName = TakeName();
        if (!mOwnsName && !IsGone(answer)) {
            qWarning("The program that runs refuses: %ls", qUtf16Printable(answer.errorMessage()));
            return EXIT_FAILURE;
        }
    }
    return std::nullopt;
}

/// Where the bus started the program, the request that it did so for is handed out right after the name, so
/// it is here once anything else has been answered. It begins the work then, without a launch window. Files
/// of its own come first: another start may have waited with this one and ask it now.
void SessionBus::Start(Application& app, const Files& files) {
    mApp = &app;
    if (mOwnsName && files.empty()) {
        (void)mBus.interface()->isServiceRegistered(Name);
        QCoreApplication::processEvents();
    }
    if (!mStarted) StartOnce(files);
}

void SessionBus::StartOnce(const Files& files) {
    mStarted = true;
    mApp->Start(files);
}

// --- What the bus asks for ---

void SessionBus::Activate(const QVariantMap& platformData) {
    Serve(platformData, [this] { ReopenOrStart(); });
}

void SessionBus::Open(const QStringList& uris, const QVariantMap& platformData) {
    Files files;
    for (const QString& uri : uris)
        files.push_back(FileFromWord(FromQt(uri)));
    Serve(platformData, [this, files] { OpenOrStart(files); });
}

void SessionBus::ActivateAction(const QString& name, const QVariantList& /*parameter*/,
                                const QVariantMap& /*platformData*/) {
    sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no action \"%1\".").arg(name));
}

/// A dialog may come of it, and who asked shall not wait for the user, but is answered only when the work
/// begins: with an answer to a request that a program about to end never gets to, nobody would serve it. Then
/// the front window comes up.
void SessionBus::Serve(const QVariantMap& platformData, std::function<void()> request) {
    const QByteArray token = platformData.value(QStringLiteral("activation-token")).toByteArray();
    setDelayedReply(true);
    const auto serve = [this, token, request = std::move(request), bus = connection(), call = message()] {
        bus.send(call.createReply());
        if (!token.isEmpty()) qputenv(ActivationToken, token);  // taken from there by the next activation
        request();
        Window* const front = mApp->FrontWindow();
        if (front) mApp->Perform([this, front] { mApp->BringToFront(*front); });
    };
    Desktop::The().WhenFree(*this, serve);
}

void SessionBus::OpenOrStart(const Files& files) {
    if (!mStarted) return StartOnce(files);
    for (const auto& file : files)
        mApp->OpenDocument(file);
}

void SessionBus::ReopenOrStart() {
    if (!mStarted) return StartOnce({});
    mApp->Reopen();
}

}  // namespace sorbel
