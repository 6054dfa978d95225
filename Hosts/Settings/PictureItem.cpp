#include "PictureItem.h"

#include "Picture.h"

#include <QPainter>

PictureItem::PictureItem(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
}

void PictureItem::setPicture(const PictureHandle& picture)
{
    if (_picture == picture)
        return;
    _picture = picture;
    const CGSize size = picture.image() ? picture.image()->size() : CGSize {};
    setImplicitSize(size.width, size.height);
    update();
    emit changed();
}

void PictureItem::setTint(const QColor& tint)
{
    _tint = tint;
    update();
    emit changed();
}

void PictureItem::paint(QPainter* painter)
{
    QImage image = _picture.image() ? imageOf(*_picture.image()) : QImage();
    if (image.isNull())
        return;
    if (_picture.image()->renderingMode() == UIImageRenderingMode::AlwaysTemplate)
        image = templateOf(image, _tint);
    QSizeF shown = QSizeF(implicitWidth(), implicitHeight());
    if (shown.width() > width() || shown.height() > height())
        shown.scale(width(), height(), Qt::KeepAspectRatio);
    QRectF place({}, shown);
    place.moveCenter(boundingRect().center());
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(place, image);
}
