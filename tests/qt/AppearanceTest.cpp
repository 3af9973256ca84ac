#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPalette>
#include <QProcess>
#include <QTest>

#include "qt/Contrast.h"
#include "qt/DesktopAppearance.h"

namespace sorbel {

/// A desktop that tells which appearance its user wants.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public:
    uint Scheme = 0;

  public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString& group, const QString& key) {
        const bool known = group == "org.freedesktop.appearance" && key == "color-scheme";
        return QDBusVariant(QVariant::fromValue(QDBusVariant(known ? QVariant(Scheme) : QVariant())));
    }
};

/// On a bus of its own.
class Appearance : public testing::Test {
  protected:
    Appearance() {
        mDaemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        mDaemon.waitForReadyRead();
        const QString address = QString::fromUtf8(mDaemon.readLine()).trimmed();
        mServer = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(address, "portal"));
        Client = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(address, "program"));
        const auto exported = QDBusConnection::ExportScriptableSlots;
        mServer->registerObject("/org/freedesktop/portal/desktop", &Desktop, exported);
        mServer->registerService("org.freedesktop.portal.Desktop");
    }
    ~Appearance() override {
        QApplication::setPalette(Light);
        for (const char* name : {"portal", "program"})
            QDBusConnection::disconnectFromBus(name);
        mDaemon.kill();
        mDaemon.waitForFinished();
    }
    void Tell(const QString& group, uint scheme) {
        QDBusMessage change = QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                                         "org.freedesktop.portal.Settings", "SettingChanged");
        change << group << "color-scheme" << QVariant::fromValue(QDBusVariant(scheme));
        mServer->send(change);
    }
    static bool IsDark() {
        const QPalette palette = QApplication::palette();
        return palette.color(QPalette::Base).lightness() < 60 &&
               palette.color(QPalette::Text).lightness() > 200;
    }
    static bool Becomes(bool dark) {
        return QTest::qWaitFor([dark] { return IsDark() == dark; });
    }

    static bool CanReadSelection() {
        const QPalette palette = QApplication::palette();
        return Contrast(palette.color(QPalette::Highlight), palette.color(QPalette::HighlightedText)) >=
               ContrastOfText;
    }

    const QPalette Light = QApplication::palette();
    Portal Desktop;
    std::unique_ptr<QDBusConnection> Client;

  private:
    QProcess mDaemon;
    std::unique_ptr<QDBusConnection> mServer;
};

TEST_F(Appearance, FollowsTheDesktop) {
    Desktop.Scheme = 1;
    const DesktopAppearance appearance(*Client);
    ASSERT_TRUE(Becomes(true));
    EXPECT_TRUE(CanReadSelection());
    Tell("org.freedesktop.appearance", 2);
    ASSERT_TRUE(Becomes(false));
    EXPECT_TRUE(CanReadSelection());
    EXPECT_EQ(QApplication::palette().window(), Light.window());
    Tell("org.example.other", 1);
    Tell("org.freedesktop.appearance", 1);
    Tell("org.example.other", 2);
    EXPECT_TRUE(Becomes(true));
}

}  // namespace sorbel

#include "AppearanceTest.moc"
