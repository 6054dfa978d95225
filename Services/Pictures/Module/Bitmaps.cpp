#include "Pictures/Module/Bitmaps.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t bytesPerPixel = 4;
constexpr int rowsAtATime = 64;

std::size_t bytesPerLine(const Bitmap& bitmap)
{
    return static_cast<std::size_t>(bitmap.width) * bytesPerPixel;
}

QImage rowsOf(const QImage& image, int first, int count)
{
    QImage rows(image.constScanLine(first), image.width(), count, image.bytesPerLine(), image.format());
    rows.setColorTable(image.colorTable());
    return rows;
}

} // namespace

Bitmap emptyBitmap(const QSize& size)
{
    Bitmap bitmap { size.width(), size.height(), {} };
    bitmap.rgba.resize(bytesPerLine(bitmap) * static_cast<std::size_t>(bitmap.height));
    return bitmap;
}

void takePixels(Bitmap& bitmap, const QImage& image)
{
    const std::size_t length = bytesPerLine(bitmap);
    for (int first = 0; first < bitmap.height; first += rowsAtATime) {
        const int count = std::min(rowsAtATime, bitmap.height - first);
        const QImage rows = rowsOf(image, first, count).convertToFormat(QImage::Format_RGBA8888);
        std::memcpy(bitmap.rgba.data() + length * static_cast<std::size_t>(first), rows.constBits(),
            length * static_cast<std::size_t>(count));
    }
}

std::shared_ptr<const Bitmap> bitmapOf(const QImage& image)
{
    if (image.isNull())
        return nullptr;
    auto bitmap = std::make_shared<Bitmap>(emptyBitmap(image.size()));
    takePixels(*bitmap, image);
    return bitmap;
}

QImage imageOf(const Bitmap& bitmap)
{
    if (bitmap.width <= 0 || bitmap.height <= 0
        || bitmap.rgba.size() != bytesPerLine(bitmap) * static_cast<std::size_t>(bitmap.height))
        return {};
    return QImage(bitmap.rgba.data(), bitmap.width, bitmap.height, static_cast<qsizetype>(bytesPerLine(bitmap)),
        QImage::Format_RGBA8888);
}
