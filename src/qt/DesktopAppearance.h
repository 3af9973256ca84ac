#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPalette>

namespace sorbel {

/// Follows the desktop's choice of a light or a dark appearance, as `org.freedesktop.portal.Settings` tells
/// it, where the toolkit draws in its own style and would stay light.
class DesktopAppearance : public QObject {
    Q_OBJECT

  public:
    /// Asks the desktop, and takes over the answer when it comes. Without a bus or a portal nothing changes.
    explicit DesktopAppearance(QDBusConnection bus);

  private Q_SLOTS:
    void SettingChanged(const QDBusMessage& change);

  private:
    void Show(const QVariant& scheme);

    const QPalette mLight;
};

}  // namespace sorbel
