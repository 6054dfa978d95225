#include "UIKit/UIImage.h"

#include "Foundation/FileCache.h"
#include "Foundation/NSFileManager.h"
#include "Foundation/NSKeyedArchiver.h"
#include "Foundation/NSString.h"
#include "Phone/Phone.h"

#include <algorithm>
#include <cmath>
#include <vector>

NS_IMPLEMENTATION(UIImage)

namespace {

constexpr const char* archivedDataField = "UIImageData";
constexpr const char* archivedScaleField = "UIScale";
constexpr const char* archivedAppField = "UIImageApp";
constexpr double appIconPoints = 29;
constexpr int bytesPerPixel = 4;
constexpr int opaqueAlpha = 255;

Value encodeImage(NSObject& object)
{
    auto& image = static_cast<UIImage&>(object);
    if (!image.app().empty())
        return Dictionary { { archivedAppField, image.app() }, { archivedScaleField, image.scale() } };
    // A picture that came from a file is archived as that file, which costs nothing and loses nothing.
    auto data = image.encoded().empty() ? UIImagePNGRepresentation(image.self()) : std::optional(image.encoded());
    if (!data)
        return {};
    return Dictionary { { archivedDataField, std::move(*data) }, { archivedScaleField, image.scale() } };
}

std::shared_ptr<NSObject> decodeImage(const Dictionary& fields)
{
    const double archivedScale = valueForKey(fields, archivedScaleField).doubleValue();
    const double scale = archivedScale > 0 ? archivedScale : 1;
    if (const auto* app = valueForKey(fields, archivedAppField).string())
        return UIImage::imageWithIconOfApp(*app, scale);
    const auto* data = valueForKey(fields, archivedDataField).data();
    return data ? UIImage::imageWithData(*data, scale) : nullptr;
}

[[maybe_unused]] const bool archivesImages = registerKeyedCoding(UIImage::classObject(), { encodeImage, decodeImage });

struct ImageContext {
    double scale;
    Bitmap bitmap;
};

std::vector<ImageContext>& contexts()
{
    static std::vector<ImageContext> open;
    return open;
}

/// Source over destination, neither premultiplied.
void blendPixel(const std::uint8_t* source, std::uint8_t* destination)
{
    const int sourceAlpha = source[3];
    const int kept = destination[3] * (opaqueAlpha - sourceAlpha) / opaqueAlpha;
    const int alpha = sourceAlpha + kept;
    if (alpha == 0)
        return;
    for (int channel = 0; channel < 3; ++channel)
        destination[channel] =
            static_cast<std::uint8_t>((source[channel] * sourceAlpha + destination[channel] * kept) / alpha);
    destination[3] = static_cast<std::uint8_t>(alpha);
}

void blendAt(const Bitmap& source, Bitmap& destination, int left, int top)
{
    const int firstRow = std::max(0, -top);
    const int lastRow = std::min(source.height, destination.height - top);
    const int firstColumn = std::max(0, -left);
    const int lastColumn = std::min(source.width, destination.width - left);
    for (int row = firstRow; row < lastRow; ++row) {
        for (int column = firstColumn; column < lastColumn; ++column) {
            const auto from = (static_cast<std::size_t>(row) * source.width + column) * bytesPerPixel;
            const auto to = (static_cast<std::size_t>(row + top) * destination.width + column + left) * bytesPerPixel;
            blendPixel(&source.rgba[from], &destination.rgba[to]);
        }
    }
}

/// The image in that file, read again only when the file has changed: pages ask for their icons whenever they build
/// their rows.
std::shared_ptr<UIImage> imageOfBundle(const std::string& path, double scale)
{
    static FileCache<std::shared_ptr<UIImage>> images;
    return images.get(path, stampOfFile(path), [&] {
        auto data = dataWithContentsOfFile(path);
        return data ? UIImage::imageWithData(std::move(*data), scale) : nullptr;
    });
}

constexpr double greatestExtent = 32767;

CGSize sizeInPoints(const PixelSize& pixels, double scale)
{
    return { pixels.width / scale, pixels.height / scale };
}

/// A width or height in pixels; 0 for what is no number.
int extentInPixels(double points, double scale)
{
    const double rounded = std::round(points * scale);
    return rounded > 0 ? static_cast<int>(std::min(rounded, greatestExtent)) : 0;
}

/// A place in pixels; outside of every context for what is further away than that, and for what is no number.
int placeInPixels(double points, double scale)
{
    constexpr double outside = 2 * greatestExtent;
    const double rounded = std::round(points * scale);
    return static_cast<int>(std::abs(rounded) < outside ? rounded : outside);
}

} // namespace

std::shared_ptr<UIImage> UIImage::imageWithData(Bytes data, double scale)
{
    const auto& images = Phone::current().images;
    const auto size = images ? images->size(data) : std::nullopt;
    if (!size)
        return nullptr;
    auto image = std::make_shared<UIImage>();
    image->_size = sizeInPoints(*size, scale);
    image->_scale = scale;
    image->_encoded = std::move(data);
    return image;
}

std::shared_ptr<UIImage> UIImage::imageWithBitmap(std::shared_ptr<const Bitmap> bitmap, double scale)
{
    if (!bitmap)
        return nullptr;
    auto image = std::make_shared<UIImage>();
    image->_size = sizeInPoints({ bitmap->width, bitmap->height }, scale);
    image->_scale = scale;
    image->_bitmap = std::move(bitmap);
    return image;
}

std::shared_ptr<UIImage> UIImage::imageWithIconOfApp(std::string app, double scale)
{
    if (app.empty() || !Phone::current().appIcons)
        return nullptr;
    auto image = std::make_shared<UIImage>();
    image->_size = { appIconPoints, appIconPoints };
    image->_scale = scale;
    image->_app = std::move(app);
    return image;
}

std::shared_ptr<UIImage> UIImage::imageWithContentsOfFile(const std::string& path)
{
    auto data = dataWithContentsOfFile(path);
    auto image = data ? imageWithData(std::move(*data)) : nullptr;
    return image && image->bitmap() ? image : nullptr;
}

std::shared_ptr<UIImage> UIImage::imageNamed_inBundle(const std::string& name, const NSBundle& bundle)
{
    const auto scale = static_cast<long>(std::ceil(UIScreen::mainScreenScale()));
    for (const long candidate : { scale, 2L, 3L, 1L }) {
        const std::string suffix = candidate > 1 ? stringWithFormat("@%ldx.png", { candidate }) : ".png";
        const std::string path = stringByAppendingPathComponent(bundle.bundlePath(), name + suffix);
        if (auto image = imageOfBundle(path, static_cast<double>(candidate)))
            return image;
    }
    return nullptr;
}

std::shared_ptr<UIImage> UIImage::imageWithRenderingMode(UIImageRenderingMode mode) const
{
    auto image = std::make_shared<UIImage>();
    image->_size = _size;
    image->_scale = _scale;
    image->_encoded = _encoded;
    image->_app = _app;
    image->_bitmap = _bitmap;
    image->_renderingMode = mode;
    return image;
}

std::shared_ptr<const Bitmap> UIImage::bitmap() const
{
    if (!_bitmap)
        _bitmap = decoded();
    return *_bitmap;
}

std::shared_ptr<const Bitmap> UIImage::decoded() const
{
    const Phone& phone = Phone::current();
    if (!_app.empty())
        return phone.appIcons ? phone.appIcons->icon(_app, _size.width, _scale) : nullptr;
    return !_encoded.empty() && phone.images ? phone.images->decode(_encoded) : nullptr;
}

void UIImage::drawInRect(const CGRect& rect) const
{
    const auto& images = Phone::current().images;
    const auto source = bitmap();
    if (contexts().empty() || !images || !source)
        return;
    ImageContext& context = contexts().back();
    const PixelSize size { extentInPixels(rect.width, context.scale), extentInPixels(rect.height, context.scale) };
    if (const auto scaled = images->scaled(*source, size))
        blendAt(*scaled, context.bitmap, placeInPixels(rect.x, context.scale), placeInPixels(rect.y, context.scale));
}

std::optional<Bytes> UIImagePNGRepresentation(const std::shared_ptr<UIImage>& image)
{
    const auto bitmap = image ? image->bitmap() : nullptr;
    return bitmap && Phone::current().images ? Phone::current().images->encodePng(*bitmap) : std::nullopt;
}

void UIGraphicsBeginImageContextWithOptions(CGSize size, bool opaque, double scale)
{
    const double used = scale > 0 ? scale : UIScreen::mainScreenScale();
    Bitmap bitmap { extentInPixels(size.width, used), extentInPixels(size.height, used), {} };
    bitmap.rgba.resize(static_cast<std::size_t>(bitmap.width) * bitmap.height * bytesPerPixel);
    if (opaque) {
        for (std::size_t i = 3; i < bitmap.rgba.size(); i += bytesPerPixel)
            bitmap.rgba[i] = opaqueAlpha;
    }
    contexts().push_back({ used, std::move(bitmap) });
}

std::shared_ptr<UIImage> UIGraphicsGetImageFromCurrentImageContext()
{
    if (contexts().empty())
        return nullptr;
    const ImageContext& context = contexts().back();
    return UIImage::imageWithBitmap(std::make_shared<const Bitmap>(context.bitmap), context.scale);
}

void UIGraphicsEndImageContext()
{
    if (!contexts().empty())
        contexts().pop_back();
}

std::size_t UIGraphicsDrainImageContexts()
{
    const std::size_t open = contexts().size();
    contexts().clear();
    return open;
}

double UIScreen::mainScreenScale()
{
    return Phone::current().screenScale;
}
