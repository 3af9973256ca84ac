#include "qt/DesktopAppearance.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStyle>

#include "qt/Contrast.h"

namespace sorbel {

namespace {

const QString Service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString Path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString Interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString Group = QStringLiteral("org.freedesktop.appearance");
const QString Key = QStringLiteral("color-scheme");
constexpr uint Dark = 1;  // 0: the user has no wish, 2: light

/// Styles of a desktop have its colours already, and so has a palette that somebody made dark.
bool IsOursToFollow(const QPalette& palette) {
    return QApplication::style()->name() == QStringLiteral("fusion") &&
           palette.color(QPalette::Window).lightness() > palette.color(QPalette::WindowText).lightness();
}

QPalette DarkPalette() {
    QPalette palette(QColor(0x3A, 0x3A, 0x3A), QColor(0x30, 0x30, 0x30));  // the others follow from these
    palette.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
    palette.setColor(QPalette::AlternateBase, QColor(0x28, 0x28, 0x28));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(0x2A, 0x2A, 0x2A));
    palette.setColor(QPalette::Highlight, QColor(0x2B, 0x72, 0xA9));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6C, 0xB4, 0xF0));
    palette.setColor(QPalette::ToolTipBase, QColor(0x40, 0x40, 0x40));
    palette.setColor(QPalette::ToolTipText, Qt::white);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
    palette.setColor(QPalette::PlaceholderText, QColor(0x90, 0x90, 0x90));
    return palette;
}

/// The toolkit's own highlight is too bright for white text.
QPalette LightPalette(QPalette palette) {
    if (!IsOursToFollow(palette)) return palette;
    const QColor text = palette.color(QPalette::HighlightedText);
    palette.setColor(QPalette::Highlight, Legible(palette.color(QPalette::Highlight), text));
    return palette;
}

/// The portal wraps the value once more for who reads it.
QVariant Unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

}  // namespace

DesktopAppearance::DesktopAppearance(QDBusConnection bus) : mLight(LightPalette(QApplication::palette())) {
    if (!IsOursToFollow(mLight)) return;
    QApplication::setPalette(mLight);
    if (!bus.isConnected()) return;
    bus.connect(Service, Path, Interface, QStringLiteral("SettingChanged"), this,
                SLOT(SettingChanged(QDBusMessage)));
    QDBusMessage question = QDBusMessage::createMethodCall(Service, Path, Interface, QStringLiteral("Read"));
    question << Group << Key;
    auto* const answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (reply.isValid()) Show(reply.value().variant());
        answer->deleteLater();
    });
}

void DesktopAppearance::SettingChanged(const QDBusMessage& change) {
    const QVariantList told = change.arguments();
    if (told.size() == 3 && told[0] == Group && told[1] == Key) Show(told[2]);
}

void DesktopAppearance::Show(const QVariant& scheme) {
    const QPalette palette = Unwrapped(scheme).toUInt() == Dark ? DarkPalette() : mLight;
    if (palette != QApplication::palette()) QApplication::setPalette(palette);
}

}  // namespace sorbel
