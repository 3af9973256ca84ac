#include "qt/ExpansionNotice.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariantMap>

namespace sorbel {

namespace {

/// The toolkit gives this change to no one on the accessibility bus of Linux, so it goes there from here,
/// over the toolkit's own connection and under the name that it gave the row. Without such a bus nothing
/// happens. The signal is that of the AT-SPI protocol, org.a11y.atspi.Event.Object.
void TellBus(QAccessibleInterface& row, bool expanded) {
    QDBusConnection bus(QStringLiteral("a11y"));
    if (!bus.isConnected()) return;
    const QString path = QStringLiteral("/org/a11y/atspi/accessible/%1").arg(QAccessible::uniqueId(&row));
    QDBusMessage signal = QDBusMessage::createSignal(path, QStringLiteral("org.a11y.atspi.Event.Object"),
                                                     QStringLiteral("StateChanged"));
    signal << QStringLiteral("expanded") << (expanded ? 1 : 0) << 0 << QVariant::fromValue(QDBusVariant(0))
           << QVariantMap();
    bus.send(signal);
}

}  // namespace

void TellExpansion(QAccessibleInterface& row) {
    QAccessible::State changed;
    changed.expanded = changed.collapsed = true;
    QAccessibleStateChangeEvent event(&row, changed);
    QAccessible::updateAccessibility(&event);
    if (QAccessible::isActive()) TellBus(row, row.state().expanded);
}

}  // namespace sorbel
