#include "Picture.h"

#include <QPainter>

#include <algorithm>

QImage imageOf(const UIImage& picture)
{
    const auto bitmap = picture.bitmap();
    if (!bitmap || bitmap->width <= 0 || bitmap->height <= 0)
        return {};
    // The image shares the bitmap's bytes and keeps them alive.
    auto* owner = new std::shared_ptr<const Bitmap>(bitmap);
    return QImage(
        bitmap->rgba.data(), bitmap->width, bitmap->height, qsizetype { bitmap->width } * 4, QImage::Format_RGBA8888,
        [](void* kept) { delete static_cast<std::shared_ptr<const Bitmap>*>(kept); }, owner);
}

QImage templateOf(const QImage& image, const QColor& color)
{
    QImage shape = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), color);
    return shape;
}

std::shared_ptr<UIImage> pictureOf(const QImage& image)
{
    if (image.isNull())
        return nullptr;
    const QImage pixels = image.convertToFormat(QImage::Format_RGBA8888);
    auto bitmap = std::make_shared<Bitmap>();
    bitmap->width = pixels.width();
    bitmap->height = pixels.height();
    const auto rowBytes = static_cast<std::size_t>(pixels.width()) * 4;
    bitmap->rgba.reserve(rowBytes * pixels.height());
    for (int row = 0; row < pixels.height(); ++row)
        bitmap->rgba.insert(bitmap->rgba.end(), pixels.constScanLine(row), pixels.constScanLine(row) + rowBytes);
    return UIImage::imageWithBitmap(std::move(bitmap), 1);
}
