#include "Platform/PhoneTest.h"
#include "UIKit/UIImage.h"

#include <array>
#include <cmath>
#include <limits>

namespace {

using Pixel = std::array<int, 4>;

constexpr Pixel red { 255, 0, 0, 255 };
constexpr Pixel blue { 0, 0, 255, 255 };
constexpr Pixel black { 0, 0, 0, 255 };
constexpr Pixel clear { 0, 0, 0, 0 };
constexpr double infinity = std::numeric_limits<double>::infinity();

std::shared_ptr<UIImage> imageOf(int width, int height, const Pixel& pixel, double scale = 1)
{
    Bitmap bitmap { width, height, {} };
    for (int i = 0; i < width * height; ++i)
        bitmap.rgba.insert(bitmap.rgba.end(), pixel.begin(), pixel.end());
    return UIImage::imageWithBitmap(std::make_shared<const Bitmap>(std::move(bitmap)), scale);
}

Pixel pixelAt(const UIImage& image, int x, int y)
{
    const Bitmap& bitmap = *image.bitmap();
    const auto at = static_cast<std::size_t>((y * bitmap.width + x) * 4);
    return { bitmap.rgba.at(at), bitmap.rgba.at(at + 1), bitmap.rgba.at(at + 2), bitmap.rgba.at(at + 3) };
}

/// The picture as a map: a letter for each pixel, "." where there is nothing.
std::string mapOf(const UIImage& image)
{
    std::string map;
    const auto bitmap = image.bitmap();
    for (int y = 0; bitmap && y < bitmap->height; ++y) {
        for (int x = 0; x < bitmap->width; ++x) {
            const Pixel pixel = pixelAt(image, x, y);
            map += pixel == clear ? '.' : pixel == red ? 'r' : pixel == blue ? 'b' : pixel == black ? 'k' : '?';
        }
        map += '\n';
    }
    return map;
}

/// Takes everything for a picture, and cannot decode it.
class ImagesWithoutPixels final : public Images {
public:
    std::optional<PixelSize> size(const Bytes&) const override { return PixelSize { 4, 2 }; }
    std::shared_ptr<const Bitmap> decode(const Bytes&) const override { return nullptr; }
    std::optional<Bytes> encodePng(const Bitmap&) const override { return Bytes(); }
    std::shared_ptr<const Bitmap> scaled(const Bitmap&, PixelSize) const override { return nullptr; }
};

/// Draws every icon as one pixel, and remembers which it was asked for.
class OnePixelIcons final : public AppIcons {
public:
    std::shared_ptr<const Bitmap> icon(const std::string& app, double points, double scale) override
    {
        requests.push_back(app + " " + std::to_string(std::lround(points)) + " " + std::to_string(std::lround(scale)));
        return hasIcons ? std::make_shared<const Bitmap>(Bitmap { 1, 1, { 255, 0, 0, 255 } }) : nullptr;
    }
    std::vector<std::string> requests;
    bool hasIcons = true;
};

class Pictures : public PhoneTest {
protected:
    void addToBundle(const std::string& file, const Bytes& content)
    {
        phone.writeFile(std::string(TestPhone::bundlePath) + "/" + file, content);
    }
    std::shared_ptr<UIImage> named(const std::string& name)
    {
        return UIImage::imageNamed_inBundle(name, *NSBundle::bundleWithPath(TestPhone::bundlePath));
    }
};

TEST_F(Pictures, OfDataHaveTheirSizeInPoints)
{
    const Bytes png = phone.png(60, 30);
    const auto image = UIImage::imageWithData(png, 2);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (CGSize { 30, 15 }));
    EXPECT_EQ(image->scale(), 2);
    EXPECT_EQ(image->renderingMode(), UIImageRenderingMode::Automatic);
    EXPECT_EQ(image->encoded(), png);
    EXPECT_EQ(UIImage::imageWithData(png)->size(), (CGSize { 60, 30 }));
    EXPECT_EQ(pixelAt(*image, 59, 29), (Pixel { 255, 255, 255, 255 }));
}

TEST_F(Pictures, OfDataThatAreNoneAreNull)
{
    for (const Bytes& data : { Bytes(), bytesOf("no picture"), bytesOf("\x89PNG\r\n\x1A\n"), Bytes(1000, 0) })
        EXPECT_FALSE(UIImage::imageWithData(data));
    EXPECT_FALSE(UIImage::imageWithBitmap(nullptr, 1));
    Phone::current().images = nullptr;
    EXPECT_FALSE(UIImage::imageWithData(phone.png(2, 2)));
}

TEST_F(Pictures, OfAFileThatIsMissingOrNoneAreNull)
{
    phone.writeFile("/picture.png", phone.png(3, 2));
    phone.writeFile("/text.png", bytesOf("text"));
    ASSERT_TRUE(UIImage::imageWithContentsOfFile("/picture.png"));
    EXPECT_EQ(UIImage::imageWithContentsOfFile("/picture.png")->size(), (CGSize { 3, 2 }));
    for (const char* path : { "/text.png", "/missing.png", "/", "" })
        EXPECT_FALSE(UIImage::imageWithContentsOfFile(path)) << path;
}

TEST_F(Pictures, ThatCannotBeDecodedHaveASizeButNoPixelsAndMakeNoFile)
{
    Phone::current().images = std::make_shared<ImagesWithoutPixels>();
    const auto image = UIImage::imageWithData({ 1 });
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (CGSize { 4, 2 }));
    EXPECT_FALSE(image->bitmap());
    EXPECT_FALSE(image->imageWithRenderingMode(UIImageRenderingMode::AlwaysTemplate)->bitmap());
    EXPECT_FALSE(UIImagePNGRepresentation(image));
}

TEST_F(Pictures, OfAFileThatCannotBeDecodedAreNull)
{
    Phone::current().images = std::make_shared<ImagesWithoutPixels>();
    phone.writeFile("/picture.png", { 1 });
    EXPECT_TRUE(UIImage::imageWithData({ 1 }));
    EXPECT_FALSE(UIImage::imageWithContentsOfFile("/picture.png"));
}

TEST_F(Pictures, OfAppsAreLookedUpWhenTheyAreFirstDrawn)
{
    const auto icons = std::make_shared<OnePixelIcons>();
    Phone::current().appIcons = icons;
    const auto image = UIImage::imageWithIconOfApp("org.example.App", 3);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (CGSize { 29, 29 }));
    EXPECT_EQ(image->scale(), 3);
    EXPECT_EQ(icons->requests, Strings {});
    EXPECT_EQ(mapOf(*image), "r\n");
    EXPECT_EQ(mapOf(*image), "r\n");
    EXPECT_EQ(mapOf(*image->imageWithRenderingMode(UIImageRenderingMode::AlwaysTemplate)), "r\n");
    EXPECT_EQ(icons->requests, Strings { "org.example.App 29 3" });
}

TEST_F(Pictures, OfAppsThatCannotBeDrawnAreNotTriedAgain)
{
    const auto icons = std::make_shared<OnePixelIcons>();
    icons->hasIcons = false;
    Phone::current().appIcons = icons;
    const auto image = UIImage::imageWithIconOfApp("org.example.App", 2);
    EXPECT_FALSE(image->bitmap());
    EXPECT_FALSE(image->bitmap());
    EXPECT_EQ(icons->requests.size(), 1U);
}

TEST_F(Pictures, OfAppsAreNullOnAPhoneWithoutIcons)
{
    EXPECT_FALSE(UIImage::imageWithIconOfApp("org.example.App", 2));
    Phone::current().appIcons = std::make_shared<OnePixelIcons>();
    EXPECT_FALSE(UIImage::imageWithIconOfApp("", 2));
    const auto image = UIImage::imageWithIconOfApp("org.example.App", 2);
    Phone::current().appIcons = nullptr;
    EXPECT_FALSE(image->bitmap());
}

TEST_F(Pictures, AreDecodedOnce)
{
    const auto image = UIImage::imageWithData(phone.png(2, 2));
    const auto bitmap = image->bitmap();
    ASSERT_TRUE(bitmap);
    Phone::current().images = nullptr;
    EXPECT_EQ(image->bitmap(), bitmap);
    EXPECT_EQ(image->imageWithRenderingMode(UIImageRenderingMode::AlwaysTemplate)->bitmap(), bitmap);
}

TEST_F(Pictures, InAnotherRenderingModeHaveTheSamePixels)
{
    for (const auto& image : { UIImage::imageWithData(phone.png(4, 2), 2), imageOf(4, 2, red, 2) }) {
        const auto tinted = image->imageWithRenderingMode(UIImageRenderingMode::AlwaysTemplate);
        EXPECT_EQ(tinted->renderingMode(), UIImageRenderingMode::AlwaysTemplate);
        EXPECT_EQ(image->renderingMode(), UIImageRenderingMode::Automatic);
        EXPECT_EQ(tinted->size(), image->size());
        EXPECT_EQ(tinted->scale(), image->scale());
        EXPECT_EQ(tinted->encoded(), image->encoded());
        EXPECT_EQ(tinted->bitmap()->rgba, image->bitmap()->rgba);
    }
}

TEST_F(Pictures, OfTheBundleAreTheVariantForTheScreen)
{
    addToBundle("Tandem.png", phone.png(10, 10));
    addToBundle("Tandem@2x.png", phone.png(20, 20));
    addToBundle("Tandem@3x.png", phone.png(30, 30));
    const std::pair<double, double> variants[] = { { 1, 1 }, { 1.5, 2 }, { 2, 2 }, { 2.75, 3 }, { 3, 3 }, { 4, 2 } };
    for (const auto& [screen, variant] : variants) {
        Phone::current().screenScale = screen;
        const auto image = named("Tandem");
        ASSERT_TRUE(image);
        EXPECT_EQ(image->scale(), variant) << screen;
        EXPECT_EQ(image->size(), (CGSize { 10, 10 })) << screen;
    }
}

TEST_F(Pictures, OfTheBundleAreAnotherVariantWhereTheirOwnIsMissingOrBroken)
{
    Phone::current().screenScale = 3;
    addToBundle("plain.png", phone.png(10, 10));
    EXPECT_EQ(named("plain")->scale(), 1);
    addToBundle("plain@3x.png", bytesOf("broken"));
    EXPECT_EQ(named("plain")->scale(), 1);
    addToBundle("plain@2x.png", phone.png(20, 20));
    EXPECT_EQ(named("plain")->scale(), 2);
    Phone::current().screenScale = 1;
    addToBundle("large@3x.png", phone.png(30, 30));
    EXPECT_EQ(named("large")->scale(), 3);
}

TEST_F(Pictures, OfTheBundleThatAreNotThereAreNull)
{
    addToBundle("Tandem.png", phone.png(10, 10));
    addToBundle("broken.png", bytesOf("broken"));
    for (const char* name :
        { "tandem", "Tandem.png", "Tandem@2x", "broken", "", "..", "/", "../TandemPreferences.bundle" })
        EXPECT_FALSE(named(name)) << name;
    EXPECT_FALSE(named(std::string("Tandem\0", 7)));
}

TEST_F(Pictures, MakeAPngOfTheirPixels)
{
    const auto file = UIImagePNGRepresentation(imageOf(3, 2, red, 2));
    ASSERT_TRUE(file);
    const auto again = UIImage::imageWithData(*file);
    ASSERT_TRUE(again);
    EXPECT_EQ(mapOf(*again), "rrr\nrrr\n");
}

TEST_F(Pictures, WithoutPixelsMakeNoPng)
{
    EXPECT_EQ(UIImagePNGRepresentation(nullptr), std::nullopt);
    EXPECT_EQ(UIImagePNGRepresentation(std::make_shared<UIImage>()), std::nullopt);
    EXPECT_EQ(UIImagePNGRepresentation(imageOf(0, 0, red)), std::nullopt);
    Phone::current().images = nullptr;
    EXPECT_EQ(UIImagePNGRepresentation(imageOf(2, 2, red)), std::nullopt);
}

class ImageContexts : public PhoneTest {
protected:
    /// What a context of that size in pixels shows after the image was drawn into it.
    static std::string drawn(CGSize size, const UIImage& image, const CGRect& rect)
    {
        UIGraphicsBeginImageContextWithOptions(size, false, 1);
        image.drawInRect(rect);
        const auto result = UIGraphicsGetImageFromCurrentImageContext();
        UIGraphicsEndImageContext();
        return result ? mapOf(*result) : "no image";
    }
};

TEST_F(ImageContexts, AreClearOrBlackToBeginWith)
{
    UIGraphicsBeginImageContextWithOptions({ 2, 1 }, false, 1);
    EXPECT_EQ(mapOf(*UIGraphicsGetImageFromCurrentImageContext()), "..\n");
    UIGraphicsBeginImageContextWithOptions({ 1, 2 }, true, 1);
    EXPECT_EQ(mapOf(*UIGraphicsGetImageFromCurrentImageContext()), "k\nk\n");
}

TEST_F(ImageContexts, HaveAsManyPixelsAPointAsTheirScale)
{
    Phone::current().screenScale = 3;
    for (const auto& [scale, pixels] : { std::pair(1.0, 40), { 2.0, 80 }, { 0.0, 120 }, { -1.0, 120 } }) {
        UIGraphicsBeginImageContextWithOptions({ 40, 40 }, false, scale);
        const auto image = UIGraphicsGetImageFromCurrentImageContext();
        EXPECT_EQ(image->bitmap()->width, pixels) << scale;
        EXPECT_EQ(image->size(), (CGSize { 40, 40 })) << scale;
        UIGraphicsEndImageContext();
    }
}

TEST_F(ImageContexts, ThatAreNotThereGiveNoImage)
{
    EXPECT_FALSE(UIGraphicsGetImageFromCurrentImageContext());
    imageOf(1, 1, red)->drawInRect({ 0, 0, 1, 1 });
    UIGraphicsEndImageContext();
    EXPECT_EQ(UIGraphicsDrainImageContexts(), 0U);
}

TEST_F(ImageContexts, NestAndTheInnermostIsDrawnInto)
{
    UIGraphicsBeginImageContextWithOptions({ 2, 1 }, false, 1);
    UIGraphicsBeginImageContextWithOptions({ 1, 1 }, false, 1);
    imageOf(1, 1, red)->drawInRect({ 0, 0, 1, 1 });
    const auto inner = UIGraphicsGetImageFromCurrentImageContext();
    UIGraphicsEndImageContext();
    inner->drawInRect({ 1, 0, 1, 1 });
    EXPECT_EQ(mapOf(*inner), "r\n");
    EXPECT_EQ(mapOf(*UIGraphicsGetImageFromCurrentImageContext()), ".r\n");
    UIGraphicsEndImageContext();
    EXPECT_FALSE(UIGraphicsGetImageFromCurrentImageContext());
}

TEST_F(ImageContexts, LeftOpenAreClosedAtTheEndOfATurn)
{
    for (int i = 0; i < 3; ++i)
        UIGraphicsBeginImageContextWithOptions({ 1, 1 }, false, 1);
    UIGraphicsEndImageContext();
    EXPECT_EQ(UIGraphicsDrainImageContexts(), 2U);
    EXPECT_FALSE(UIGraphicsGetImageFromCurrentImageContext());
    EXPECT_EQ(UIGraphicsDrainImageContexts(), 0U);
}

TEST_F(ImageContexts, GiveAnImageThatLaterDrawingDoesNotChange)
{
    UIGraphicsBeginImageContextWithOptions({ 1, 1 }, false, 1);
    const auto before = UIGraphicsGetImageFromCurrentImageContext();
    imageOf(1, 1, red)->drawInRect({ 0, 0, 1, 1 });
    EXPECT_EQ(mapOf(*before), ".\n");
    EXPECT_EQ(mapOf(*UIGraphicsGetImageFromCurrentImageContext()), "r\n");
}

TEST_F(ImageContexts, WithoutAnAreaGiveAnImageWithoutPixels)
{
    const double none = std::nan("");
    for (const CGSize& size :
        { CGSize { 0, 0 }, { 5, 0 }, { 0, 5 }, { -5, 5 }, { 0.2, 5 }, { none, 5 }, { none, none } }) {
        UIGraphicsBeginImageContextWithOptions(size, true, 1);
        imageOf(1, 1, red)->drawInRect({ 0, 0, 1, 1 });
        const auto image = UIGraphicsGetImageFromCurrentImageContext();
        ASSERT_TRUE(image);
        EXPECT_EQ(image->bitmap()->rgba, Bytes()) << size.width;
        EXPECT_EQ(UIImagePNGRepresentation(image), std::nullopt);
        UIGraphicsEndImageContext();
    }
}

TEST_F(ImageContexts, ShowAnImageStretchedIntoItsRectangle)
{
    EXPECT_EQ(drawn({ 5, 4 }, *imageOf(1, 1, red), { 1, 1, 3, 2 }), ".....\n.rrr.\n.rrr.\n.....\n");
    EXPECT_EQ(drawn({ 3, 2 }, *imageOf(30, 2, red), { 0, 0, 3, 2 }), "rrr\nrrr\n");
    EXPECT_EQ(drawn({ 2, 2 }, *imageOf(2, 2, red, 2), { 0, 0, 2, 2 }), "rr\nrr\n");
}

TEST_F(ImageContexts, PlaceARectangleOnWholePixels)
{
    EXPECT_EQ(drawn({ 4, 1 }, *imageOf(1, 1, red), { 0.6, 0, 1.6, 1 }), ".rr.\n");
    UIGraphicsBeginImageContextWithOptions({ 2, 1 }, false, 2);
    imageOf(1, 1, red)->drawInRect({ 0.5, 0, 1, 1 });
    EXPECT_EQ(mapOf(*UIGraphicsGetImageFromCurrentImageContext()), ".rr.\n.rr.\n");
}

TEST_F(ImageContexts, CutOffWhatLiesOutside)
{
    const auto image = imageOf(2, 2, red);
    EXPECT_EQ(drawn({ 3, 3 }, *image, { -1, -1, 2, 2 }), "r..\n...\n...\n");
    EXPECT_EQ(drawn({ 3, 3 }, *image, { 2, 2, 2, 2 }), "...\n...\n..r\n");
    EXPECT_EQ(drawn({ 2, 2 }, *image, { -1, -1, 5, 5 }), "rr\nrr\n");
    for (const CGRect& rect :
        { CGRect { 3, 0, 2, 2 }, { -2, 0, 2, 2 }, { 0, 3, 2, 2 }, { 0, -2, 2, 2 }, { 100, 100, 2, 2 } })
        EXPECT_EQ(drawn({ 3, 1 }, *image, rect), "...\n");
}

TEST_F(ImageContexts, ShowNothingOfARectangleWithoutAnArea)
{
    const auto image = imageOf(2, 2, red);
    for (const CGRect& rect : { CGRect {}, { 0, 0, 2, 0 }, { 0, 0, -2, 2 }, { 2, 2, -2, -2 }, { 0, 0, 0.4, 2 } })
        EXPECT_EQ(drawn({ 2, 1 }, *image, rect), "..\n");
}

TEST_F(ImageContexts, ShowNothingOfARectangleThatIsNowhere)
{
    const auto image = imageOf(2, 2, red);
    for (const double far : { 1e9, -1e9, 1e300, -1e300, infinity, -infinity, std::nan("") }) {
        EXPECT_EQ(drawn({ 2, 1 }, *image, { far, 0, 2, 2 }), "..\n") << far;
        EXPECT_EQ(drawn({ 2, 1 }, *image, { 0, far, 2, 2 }), "..\n") << far;
    }
    const double none = std::nan("");
    EXPECT_EQ(drawn({ 2, 1 }, *image, { 0, 0, none, 2 }), "..\n");
    EXPECT_EQ(drawn({ 2, 1 }, *image, { 0, 0, 2, none }), "..\n");
}

TEST_F(ImageContexts, RefuseARectangleTooLargeToBeDrawn)
{
    for (const double large : { 1e5, 1e300, infinity })
        EXPECT_EQ(drawn({ 2, 1 }, *imageOf(1, 1, red), { 0, 0, large, large }), "..\n") << large;
}

TEST_F(ImageContexts, BlendHalfTransparentPixelsWithWhatIsThere)
{
    UIGraphicsBeginImageContextWithOptions({ 3, 1 }, false, 1);
    imageOf(1, 1, blue)->drawInRect({ 0, 0, 2, 1 });
    imageOf(1, 1, { 255, 0, 0, 51 })->drawInRect({ 1, 0, 2, 1 });
    imageOf(1, 1, clear)->drawInRect({ 0, 0, 3, 1 });
    const auto image = UIGraphicsGetImageFromCurrentImageContext();
    EXPECT_EQ(pixelAt(*image, 0, 0), blue);
    EXPECT_EQ(pixelAt(*image, 1, 0), (Pixel { 51, 0, 204, 255 }));
    EXPECT_EQ(pixelAt(*image, 2, 0), (Pixel { 255, 0, 0, 51 }));
}

TEST_F(ImageContexts, StayOpaqueWhateverIsDrawn)
{
    UIGraphicsBeginImageContextWithOptions({ 1, 1 }, true, 1);
    imageOf(1, 1, { 255, 255, 255, 128 })->drawInRect({ 0, 0, 1, 1 });
    EXPECT_EQ(pixelAt(*UIGraphicsGetImageFromCurrentImageContext(), 0, 0), (Pixel { 128, 128, 128, 255 }));
}

TEST_F(ImageContexts, ShowNothingOfAnImageWithoutPixelsOrWithoutAService)
{
    EXPECT_EQ(drawn({ 2, 1 }, *std::make_shared<UIImage>(), { 0, 0, 2, 1 }), "..\n");
    EXPECT_EQ(drawn({ 2, 1 }, *imageOf(0, 0, red), { 0, 0, 2, 1 }), "..\n");
    Phone::current().images = nullptr;
    EXPECT_EQ(drawn({ 2, 1 }, *imageOf(1, 1, red), { 0, 0, 2, 1 }), "..\n");
}

} // namespace
