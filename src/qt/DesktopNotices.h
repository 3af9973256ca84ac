#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <vector>

namespace sorbel {

/// Words to the user that ask nothing and take no focus: the desktop's own notifications, or, where there are
/// none, a small window in the corner of the screen, which goes by itself or with a click.
class DesktopNotices : public QObject {
  public:
    explicit DesktopNotices(QDBusConnection bus) : mBus(std::move(bus)) {}

    /// Both are plain text.
    void Show(const QString& title, const QString& text);

  private:
    void ShowWindow(const QString& title, const QString& text);

    QDBusConnection mBus;
    std::vector<QPointer<QWidget>> mWindows;  // the lowest first
};

}  // namespace sorbel
