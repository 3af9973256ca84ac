#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/FolderItem.h"

namespace sorbel {

class Application;

/// The program on the session bus as `org.freedesktop.Application`. The desktop asks it there to open files
/// and to come to the front, and so does every later start, so that one program runs in a session.
class SessionBus : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    using Files = std::vector<std::shared_ptr<FolderItem>>;

    /// Takes the program's name, if there is a bus and no running program has it.
    SessionBus();
    ~SessionBus() override;

    /// This is the program that the session asks from now on.
    [[nodiscard]] bool OwnsName() const { return mOwnsName; }
    /// Gives the files to the program that already runs, or brings it to the front if there are none, and
    /// waits for as long as that is busy. The status to end with; nothing if no program runs, or none any
    /// more, and the files are to be opened here.
    [[nodiscard]] std::optional<int> HandOver(const Files& files);
    /// Starts the program with the files, or with what the bus started it for. It must outlive the event
    /// loop.
    void Start(Application& app, const Files& files);

  public Q_SLOTS:
    // --- What the bus asks for; each returns at once and is carried out when the event loop gets to it ---
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    /// The program has no actions outside its windows: an error.
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameter,
                                     const QVariantMap& platformData);

  private:
    void Serve(const QVariantMap& platformData, std::function<void()> request);
    [[nodiscard]] bool TakeName();
    [[nodiscard]] QDBusMessage Answer(const QDBusMessage& request);
    void StartOnce(const Files& files);
    void OpenOrStart(const Files& files);
    void ReopenOrStart();

    QDBusConnection mBus;
    bool mOwnsName = false;
    bool mStarted = false;
    Application* mApp = nullptr;
};

}  // namespace sorbel
