#include "qt/ProgramIcon.h"

#include <QPixmap>

#include "platform/SpecialFolder.h"
#include "qt/Text.h"

namespace sorbel {

/// Title bars and lists of windows want it small, and few of them shrink it well.
QIcon ProgramIcon() {
    const auto resources = SpecialFolder::Resources();
    const auto file = resources ? resources->Child("SorbelIcon@2x.png") : nullptr;
    QImage drawn = file ? QImage(ToQt(file->NativePath())) : QImage();
    QIcon icon;
    if (drawn.isNull()) return icon;
    drawn.setDevicePixelRatio(1);  // the name has given it another one
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(
            QPixmap::fromImage(drawn.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    return icon;
}

}  // namespace sorbel
