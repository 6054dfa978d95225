#include "CropItem.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr double squareMargin = 16;
constexpr double greatestZoom = 8;
const QColor shade(0, 0, 0, 150);
const QColor outline(255, 255, 255, 230);

} // namespace

CropItem::CropItem(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    setClip(true);
}

void CropItem::setPhoto(const QString& photo)
{
    _photo = photo;
    if (isComponentComplete())
        load();
}

void CropItem::componentComplete()
{
    QQuickPaintedItem::componentComplete();
    load();
}

void CropItem::load()
{
    _image = _host && !_photo.isEmpty() ? _host->photo(_photo) : QImage();
    _zoom = 1;
    _middle = QRectF(_image.rect()).center();
    update();
    emit photoChanged();
}

void CropItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    update();
}

QRectF CropItem::square() const
{
    const double side = std::max(1.0, std::min(width(), height()) - 2 * squareMargin);
    QRectF square(0, 0, side, side);
    square.moveCenter(boundingRect().center());
    return square;
}

double CropItem::pointsPerPixel() const
{
    const int shorter = std::min(_image.width(), _image.height());
    return shorter > 0 ? square().width() / shorter * _zoom : 1;
}

void CropItem::moveBy(double x, double y)
{
    _middle -= QPointF(x, y) / pointsPerPixel();
    keepCovered();
}

void CropItem::zoomBy(double factor, double x, double y)
{
    const QPointF offset = QPointF(x, y) - square().center();
    const QPointF held = _middle + offset / pointsPerPixel();
    _zoom = std::clamp(_zoom * factor, 1.0, greatestZoom);
    _middle = held - offset / pointsPerPixel();
    keepCovered();
}

void CropItem::keepCovered()
{
    const double half = square().width() / pointsPerPixel() / 2;
    const auto within = [half](double middle, int extent) {
        return extent - half < half ? extent / 2.0 : std::clamp(middle, half, extent - half);
    };
    _middle = { within(_middle.x(), _image.width()), within(_middle.y(), _image.height()) };
    update();
}

QRect CropItem::croppedPixels() const
{
    // Rounded once for both directions: a square stays one.
    const double exact = square().width() / pointsPerPixel();
    const int side = std::clamp(qRound(exact), 1, std::min(_image.width(), _image.height()));
    const auto start = [&](double middle, int extent) {
        return std::clamp(qRound(middle - exact / 2), 0, extent - side);
    };
    return { start(_middle.x(), _image.width()), start(_middle.y(), _image.height()), side, side };
}

QImage CropItem::cropped() const
{
    return _image.isNull() ? QImage() : _image.copy(croppedPixels());
}

void CropItem::pickInto(SheetModel* sheet) const
{
    if (sheet)
        sheet->pick(cropped());
}

void CropItem::paint(QPainter* painter)
{
    if (_image.isNull())
        return;
    const double scale = pointsPerPixel();
    const QPointF origin = square().center() - _middle * scale;
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(QRectF(origin, QSizeF(_image.size()) * scale), _image);
    QPainterPath outside;
    outside.addRect(boundingRect());
    outside.addRect(square());
    painter->fillPath(outside, shade);
    painter->setPen(QPen(outline, 1));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(square());
}
