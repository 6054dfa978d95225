#include "Pictures/Module/QtImages.h"

#include "Pictures/Module/Bitmaps.h"
#include "Pictures/PictureFile.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QLoggingCategory>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

constexpr qint64 mostPixels = 50'000'000;
constexpr qint64 bytesPerPixel = 4;
constexpr int bitsPerByte = 8;
constexpr int mostMegabytes = (mostPixels * bytesPerPixel >> 20) + 1;
constexpr std::size_t leastBeside = 64U << 20U;
constexpr std::size_t besidePerByte = 64;
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

/// Once a process. A file that is no picture is an answer here, not a fault that the user should read of.
bool prepareToolkit()
{
    QImageReader::setAllocationLimit(mostMegabytes);
    previousFilter = QLoggingCategory::installFilter(filterCategory);
    return true;
}

bool canBeShown(const QSize& size)
{
    return !size.isEmpty() && qint64 { size.width() } * size.height() <= mostPixels;
}

const char* nameOf(PictureFormat format)
{
    switch (format) {
    case PictureFormat::Png:
        return "png";
    case PictureFormat::Jpeg:
        return "jpeg";
    case PictureFormat::Gif:
        return "gif";
    default:
        return "bmp";
    }
}

/// Reads a harmless picture, whose file outlives it.
class Reader {
public:
    explicit Reader(const Bytes& file)
        : _png(formatOfPicture(file) == PictureFormat::Png ? withoutNotes(file) : Bytes())
        , _file(_png.empty() ? file : _png)
    {
        if (_file.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
            return;
        _buffer.setData(
            QByteArray::fromRawData(reinterpret_cast<const char*>(_file.data()), static_cast<qsizetype>(_file.size())));
        _buffer.open(QIODevice::ReadOnly);
        _reader.setDevice(&_buffer);
        _reader.setFormat(nameOf(formatOfPicture(_file)));
        _reader.setAutoDetectImageFormat(false);
        _reader.setAutoTransform(true);
    }

    /// Upright, and empty for no picture.
    QSize size() const
    {
        const QSize stored = storedSize();
        return _reader.transformation() & QImageIOHandler::TransformationRotate90 ? stored.transposed() : stored;
    }

    std::shared_ptr<const Bitmap> read()
    {
        const QSize shown = size();
        if (!canBeShown(shown) || bytesBeside(storedSize()) > mostBeside())
            return nullptr;
        auto bitmap = std::make_shared<Bitmap>(emptyBitmap(shown));
        QImage image = imageOn(*bitmap, storedSize());
        if (!_reader.read(&image) || image.size() != shown)
            return nullptr;
        takePixels(*bitmap, image);
        return bitmap;
    }

private:
    QSize storedSize() const
    {
        // The reader takes the first frame's in some.
        const auto gif = sizeOfGif(_file);
        return gif ? QSize(gif->width, gif->height) : _reader.size();
    }

    bool isReadInPlace() const
    {
        return _reader.imageFormat() == QImage::Format_RGB32 || _reader.imageFormat() == QImage::Format_ARGB32;
    }

    /// An image on the memory of the bitmap, which spares the reader one of its own, where it reads that form of pixel.
    QImage imageOn(Bitmap& bitmap, const QSize& stored) const
    {
        if (!isReadInPlace())
            return {};
        return QImage(
            bitmap.rgba.data(), stored.width(), stored.height(), stored.width() * bytesPerPixel, _reader.imageFormat());
    }

    std::size_t bytesBeside(const QSize& stored) const
    {
        const auto pixels = static_cast<std::size_t>(stored.width()) * static_cast<std::size_t>(stored.height());
        const std::size_t turned = _reader.transformation() == QImageIOHandler::TransformationNone ? 0 : bytesPerPixel;
        return coefficientBytes(_file) + pixels * (turned + bytesBesidePerPixel());
    }

    std::size_t bytesBesidePerPixel() const
    {
        if (isReadInPlace())
            return 0;
        const int bits = QImage::toPixelFormat(_reader.imageFormat()).bitsPerPixel();
        // Readers that do not say, as that of GIF, compose two pictures of four bytes a pixel.
        return bits > 0 ? static_cast<std::size_t>(std::max(bits / bitsPerByte, 1)) : 2 * bytesPerPixel;
    }

    std::size_t mostBeside() const { return std::max(leastBeside, besidePerByte * _file.size()); }

    const Bytes _png;
    const Bytes& _file;
    QBuffer _buffer;
    QImageReader _reader;
};

} // namespace

QtImages::QtImages()
{
    [[maybe_unused]] static const bool isPrepared = prepareToolkit();
}

std::optional<PixelSize> QtImages::size(const Bytes& file) const
{
    const QSize size = isHarmlessPicture(file) ? Reader(file).size() : QSize();
    if (size.isEmpty())
        return std::nullopt;
    return PixelSize { size.width(), size.height() };
}

std::shared_ptr<const Bitmap> QtImages::decode(const Bytes& file) const
{
    return isHarmlessPicture(file) ? Reader(file).read() : nullptr;
}

std::optional<Bytes> QtImages::encodePng(const Bitmap& bitmap) const
{
    const QImage image = canBeShown({ bitmap.width, bitmap.height }) ? imageOf(bitmap) : QImage();
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !QImageWriter(&buffer, nameOf(PictureFormat::Png)).write(image))
        return std::nullopt;
    return Bytes(file.begin(), file.end());
}

std::shared_ptr<const Bitmap> QtImages::scaled(const Bitmap& bitmap, PixelSize size) const
{
    const QImage image = canBeShown({ bitmap.width, bitmap.height }) ? imageOf(bitmap) : QImage();
    const QSize target(size.width, size.height);
    if (image.isNull() || !canBeShown(target))
        return nullptr;
    return bitmapOf(image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}
