#include "qt/DesktopNotices.h"

#include <QAccessible>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <chrono>

namespace sorbel {

namespace {

constexpr std::chrono::seconds Shown(15);
constexpr int Margin = 12;  ///< from the edges of the screen and between windows, in pixels

/// A call of the interface that the desktops have agreed on at freedesktop.org.
QDBusMessage Notification(const QString& title, const QString& text) {
    const QString name = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage call = QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/Notifications"),
                                                       name, QStringLiteral("Notify"));
    const QString desktopFile = QGuiApplication::desktopFileName();
    const QVariantMap hints{{QStringLiteral("desktop-entry"), desktopFile}};
    constexpr int AsTheDesktopLikes = -1;
    call << QCoreApplication::applicationName() << 0u << desktopFile << title << text.toHtmlEscaped()
         << QStringList() << hints << AsTheDesktopLikes;
    return call;
}

class NoticeWindow : public QFrame {
  public:
    NoticeWindow(const QString& title, const QString& text)
        : QFrame(nullptr, Qt::ToolTip | Qt::WindowDoesNotAcceptFocus) {
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_DeleteOnClose);
        setFrameShape(QFrame::Box);
        setAccessibleName(title);
        setAccessibleDescription(text);
        auto* lines = new QVBoxLayout(this);
        for (const QString& line : {title, text}) {
            auto* label = new QLabel(line);
            label->setTextFormat(Qt::PlainText);
            label->setWordWrap(true);
            lines->addWidget(label);
            if (line != title) continue;
            QFont bold = label->font();
            bold.setBold(true);
            label->setFont(bold);
        }
        setFixedWidth(fontMetrics().averageCharWidth() * 48);
        setFixedHeight(heightForWidth(width()));
        QTimer::singleShot(Shown, this, &QWidget::close);
    }

  protected:
    void mousePressEvent(QMouseEvent*) override { close(); }
    void showEvent(QShowEvent* event) override {
        QFrame::showEvent(event);
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
};

}  // namespace

void DesktopNotices::Show(const QString& title, const QString& text) {
    if (!mBus.isConnected()) return ShowWindow(title, text);
    auto* watcher = new QDBusPendingCallWatcher(mBus.asyncCall(Notification(title, text)), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, title, text](auto* finished) {
        if (finished->isError()) ShowWindow(title, text);
        finished->deleteLater();
    });
}

void DesktopNotices::ShowWindow(const QString& title, const QString& text) {
    std::erase_if(mWindows, [](const auto& window) { return window.isNull(); });
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const int below = mWindows.empty() ? screen.bottom() + 1 : mWindows.back()->y();
    auto* window = new NoticeWindow(title, text);
    window->move(screen.right() + 1 - window->width() - Margin, below - window->height() - Margin);
    window->show();
    mWindows.emplace_back(window);
}

}  // namespace sorbel
