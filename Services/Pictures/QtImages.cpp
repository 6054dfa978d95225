#include "Pictures/QtImages.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QLoggingCategory>

#include <cstring>
#include <limits>

namespace {

constexpr qint64 mostPixels = 50'000'000;
constexpr std::size_t bytesPerPixel = 4;
/// Most pictures are of this format. To find out the format of one, the toolkit loads what it has for all of them.
constexpr const char* pngSignature = "\x89PNG\r\n\x1a\n";
constexpr const char* pngFormat = "png";
constexpr const char* imageCategories = "qt.gui.imageio";

QLoggingCategory::CategoryFilter previousFilter = nullptr;

void filterCategory(QLoggingCategory* category)
{
    if (previousFilter)
        previousFilter(category);
    if (std::strncmp(category->categoryName(), imageCategories, std::strlen(imageCategories)) != 0)
        return;
    category->setEnabled(QtInfoMsg, false);
    category->setEnabled(QtWarningMsg, false);
}

/// A file that is no picture is an answer here, not a fault that the user should read of.
void silenceWarnings()
{
    [[maybe_unused]] static const bool isSilent = [] {
        previousFilter = QLoggingCategory::installFilter(filterCategory);
        return true;
    }();
}

bool canBeShown(const QSize& size)
{
    return !size.isEmpty() && qint64 { size.width() } * size.height() <= mostPixels;
}

/// Reads a picture file that outlives it.
class Reader {
public:
    explicit Reader(const Bytes& file)
    {
        if (file.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
            return;
        _buffer.setData(
            QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()), static_cast<qsizetype>(file.size())));
        _buffer.open(QIODevice::ReadOnly);
        _reader.setDevice(&_buffer);
        if (_buffer.data().startsWith(pngSignature)) {
            _reader.setFormat(pngFormat);
            _reader.setAutoDetectImageFormat(false);
        } else {
            _reader.setDecideFormatFromContent(true);
        }
        _reader.setAutoTransform(true);
    }

    /// Upright, and empty for no picture.
    QSize size()
    {
        const QSize stored = _reader.size();
        return _reader.transformation() & QImageIOHandler::TransformationRotate90 ? stored.transposed() : stored;
    }
    QImage read()
    {
        if (!canBeShown(size()))
            return {};
        // A frame of a GIF may be larger than the picture says it is.
        const QImage image = _reader.read();
        return canBeShown(image.size()) ? image : QImage();
    }

private:
    QBuffer _buffer;
    QImageReader _reader;
};

std::shared_ptr<const Bitmap> bitmapOf(const QImage& image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_RGBA8888);
    if (pixels.isNull())
        return nullptr;
    return std::make_shared<const Bitmap>(Bitmap {
        pixels.width(), pixels.height(), Bytes(pixels.constBits(), pixels.constBits() + pixels.sizeInBytes()) });
}

/// An image on the bitmap's own pixels; null when the bitmap has none or not as many as it says.
QImage imageOf(const Bitmap& bitmap)
{
    if (!canBeShown({ bitmap.width, bitmap.height }))
        return {};
    const std::size_t bytesPerLine = static_cast<std::size_t>(bitmap.width) * bytesPerPixel;
    if (bitmap.rgba.size() != bytesPerLine * static_cast<std::size_t>(bitmap.height))
        return {};
    return QImage(
        bitmap.rgba.data(), bitmap.width, bitmap.height, static_cast<qsizetype>(bytesPerLine), QImage::Format_RGBA8888);
}

} // namespace

QtImages::QtImages()
{
    silenceWarnings();
}

std::optional<PixelSize> QtImages::size(const Bytes& file) const
{
    const QSize size = Reader(file).size();
    if (size.isEmpty())
        return std::nullopt;
    return PixelSize { size.width(), size.height() };
}

std::shared_ptr<const Bitmap> QtImages::decode(const Bytes& file) const
{
    return bitmapOf(Reader(file).read());
}

std::optional<Bytes> QtImages::encodePng(const Bitmap& bitmap) const
{
    const QImage image = imageOf(bitmap);
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !QImageWriter(&buffer, pngFormat).write(image))
        return std::nullopt;
    return Bytes(file.begin(), file.end());
}

std::shared_ptr<const Bitmap> QtImages::scaled(const Bitmap& bitmap, PixelSize size) const
{
    const QImage image = imageOf(bitmap);
    const QSize target(size.width, size.height);
    if (image.isNull() || !canBeShown(target))
        return nullptr;
    return bitmapOf(image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}
