#include "qt/MessageLook.h"

#include <QGridLayout>
#include <QMessageBox>
#include <QScreen>
#include <QSpacerItem>
#include <algorithm>

namespace sorbel {

namespace {

constexpr int WidestBox = 1000;  // as the toolkit makes them

}  // namespace

/// The desktop does not tell the font of its title bars, but a bold one is seldom wider. Beside the title
/// stand the buttons of the window. A message box is as wide as its contents want, whatever its minimum.
void SetTitle(QMessageBox& box, const QString& title) {
    QFont font = box.font();
    font.setBold(true);
    const QFontMetrics metrics(font);
    const int buttons = 7 * metrics.height();
    const int room = std::min(box.screen()->availableGeometry().width() / 2, WidestBox) - buttons;
    const QString shown = metrics.elidedText(title, Qt::ElideMiddle, room);
    box.setWindowTitle(QString(shown).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]")));
    auto& grid = dynamic_cast<QGridLayout&>(*box.layout());
    const int width = metrics.horizontalAdvance(shown) + buttons;
    grid.addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Fixed), grid.rowCount(), 0, 1,
                 grid.columnCount());
}

}  // namespace sorbel
