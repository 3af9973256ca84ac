#include "qt/QtGraphics.h"

#include <QFontMetricsF>
#include <QPixmapCache>

#include "qt/QtTheme.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

/// The representation with enough pixels for the device, or the one with most. They are in ascending order.
const Picture& Representation(const Picture& picture, double scale) {
    if (picture.ImageCount() == 0) return picture;
    for (size_t index = 0; index < picture.ImageCount(); ++index)
        if (picture.IndexedImage(index)->Width() >= picture.Width() * scale)
            return *picture.IndexedImage(index);
    return *picture.IndexedImage(picture.ImageCount() - 1);
}

QPixmap ToPixmap(const Picture& pixels) {
    return QPixmap::fromImage(QImage(pixels.Pixels().data(), pixels.Width(), pixels.Height(),
                                     4 * pixels.Width(), QImage::Format_RGBA8888));
}

void Recolour(QPixmap& pixmap, Color tint) {
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), ToQColor(tint));
}

/// Icons are tinted anew at every paint, so what has been made of one is kept by its name and tint.
QPixmap KeptPixmap(const Picture& picture, double scale, Color wanted) {
    const Picture& pixels = Representation(picture, scale);
    if (picture.IconName.empty()) return ToPixmap(pixels);
    const QString tint = picture.Tinted ? QString::number(wanted.Value, 16) : QStringLiteral("-");
    const QString key =
        QStringLiteral("icon %1 %2 %3").arg(tint).arg(pixels.Width()).arg(ToQt(picture.IconName));
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = ToPixmap(pixels);
        if (picture.Tinted && wanted.Value != picture.Tint.Value) Recolour(pixmap, wanted);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

}  // namespace

QtGraphics::QtGraphics(QPainter& painter, const QRect& area, const DesignUnits& units)
    : mPainter(painter), mWidth(units.FromPixels(area.width())), mHeight(units.FromPixels(area.height())) {
    mPainter.save();
    mPainter.setClipRect(area, Qt::IntersectClip);
    mPainter.translate(area.topLeft());
    mPainter.scale(units.Factor(), units.Factor());
    mPainter.setFont(units.ForUnits(mPainter.font()));
}

QFont QtGraphics::Font() const {
    QFont font = mPainter.font();
    font.setBold(Bold);
    font.setItalic(Italic);
    return font;
}

double QtGraphics::StringWidth(StringView text) const {
    return QFontMetricsF(Font(), mPainter.device()).horizontalAdvance(ToQt(text));
}

void QtGraphics::DrawPicture(const Picture& picture, int x, int y) {
    DrawTinted(picture, x, y, picture.Tint);
}

void QtGraphics::DrawTinted(const Picture& picture, int x, int y, Color tint) {
    const double scale = mPainter.device()->devicePixelRatioF() * mPainter.worldTransform().m11();
    const QPixmap pixmap = KeptPixmap(picture, scale, tint);
    if (pixmap.isNull()) return;
    mPainter.setRenderHint(QPainter::SmoothPixmapTransform);
    mPainter.drawPixmap(QRect(x, y, picture.Width(), picture.Height()), pixmap);
}

/// One pixel wide at every scale.
QPen QtGraphics::HairLine() const {
    QPen pen(ToQColor(ForeColor), 1);
    pen.setCosmetic(true);
    return pen;
}

void QtGraphics::DrawLine(int x1, int y1, int x2, int y2) {
    mPainter.setPen(HairLine());
    mPainter.drawLine(x1, y1, x2, y2);
}

void QtGraphics::DrawRect(int x, int y, int width, int height) {
    mPainter.setPen(HairLine());
    mPainter.setBrush(Qt::NoBrush);
    mPainter.drawRect(x, y, width - 1, height - 1);
}

void QtGraphics::FillRect(int x, int y, int width, int height) {
    mPainter.fillRect(x, y, width, height, ToQColor(ForeColor));
}

}  // namespace sorbel
