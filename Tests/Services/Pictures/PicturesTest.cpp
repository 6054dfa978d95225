#include "Pictures/ModuleImages.h"
#include "PngMaker.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string_view>

bool operator==(const Bitmap& a, const Bitmap& b)
{
    return a.width == b.width && a.height == b.height && a.rgba == b.rgba;
}

std::ostream& operator<<(std::ostream& stream, const Bitmap& bitmap)
{
    return stream << bitmap.width << " x " << bitmap.height << ", " << testing::PrintToString(bitmap.rgba);
}

std::ostream& operator<<(std::ostream& stream, const PixelSize& size)
{
    return stream << size.width << " x " << size.height;
}

namespace {

using Pixel = Bytes;

const Pixel red { 255, 0, 0, 255 };
const Pixel blue { 0, 0, 255, 255 };
const Pixel faint { 200, 100, 50, 1 };
const Pixel clear { 10, 20, 30, 0 };
const Pixel black { 0, 0, 0, 255 };
const Pixel white { 255, 255, 255, 255 };

Bitmap bitmap(int width, int height, const std::vector<Pixel>& pixels)
{
    Bitmap bitmap { width, height, {} };
    for (const Pixel& pixel : pixels)
        bitmap.rgba.insert(bitmap.rgba.end(), pixel.begin(), pixel.end());
    return bitmap;
}

Pixel pixelAt(const Bitmap& bitmap, int x, int y)
{
    const auto begin = bitmap.rgba.begin() + (y * bitmap.width + x) * 4;
    return Pixel(begin, begin + 4);
}

Bytes fromHex(std::string_view digits)
{
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16)));
    return bytes;
}

/// 16 x 8, black on the left and white on the right.
const Bytes jpeg = fromHex("ffd8ffe000104a46494600010101006400640000ffdb004300100b0c0e0c0a100e0d0e1211101318281a1816161"
                           "83123251d283a333d3c3933383740485c4e4044"
                           "57453738506d51575f626768673e4d71797064785c656763ffc0000b080008001001011100ffc40015000101000"
                           "00000000000000000000000000708ffc4001410"
                           "0100000000000000000000000000000000ffda0008010100003f003f500fffd9");

/// Two frames of 2 x 1: red and blue, then blue and red.
const Bytes animation =
    fromHex("47494638396102000100800000ff00000000ff21ff0b4e45545343415045322e30030100000021f904000a0000002c0000000002"
            "000100000202440a0021f904000a0000002c00000000020001000002020c0a003b");

/// The photo as a camera held in that orientation writes it.
Bytes withOrientation(std::uint8_t orientation)
{
    const Bytes exif { 0xFF, 0xE1, 0, 34, 'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8, 0, 1, 0x01, 0x12, 0, 3,
        0, 0, 0, 1, 0, orientation, 0, 0, 0, 0, 0, 0 };
    Bytes file = jpeg;
    file.insert(file.begin() + 2, exif.begin(), exif.end());
    return file;
}

Bytes png(const Bitmap& bitmap)
{
    return ModuleImages().encodePng(bitmap).value();
}

} // namespace

TEST(PictureFiles, PngKeepsEveryPixel)
{
    const Bitmap original = bitmap(2, 3, { red, blue, faint, clear, black, white });
    const auto decoded = ModuleImages().decode(png(original));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, original);
    EXPECT_EQ(ModuleImages().size(png(original)), (PixelSize { 2, 3 }));
}

TEST(PictureFiles, EncodedFileIsAPng)
{
    const Bytes file = png(bitmap(1, 1, { red }));
    EXPECT_EQ(Bytes(file.begin(), file.begin() + 8), (Bytes { 0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n' }));
}

TEST(PictureFiles, BitmapsWithoutTheirPixelsAreNotEncoded)
{
    const ModuleImages images;
    EXPECT_EQ(images.encodePng({}), std::nullopt);
    EXPECT_EQ(images.encodePng({ 0, 5, {} }), std::nullopt);
    EXPECT_EQ(images.encodePng({ -1, -1, { 0, 0, 0, 0 } }), std::nullopt);
    EXPECT_EQ(images.encodePng({ 2, 1, { 0, 0, 0, 0 } }), std::nullopt);
    EXPECT_EQ(images.encodePng({ 1, 1, { 0, 0, 0, 0, 0 } }), std::nullopt);
    EXPECT_EQ(images.encodePng({ 2'000'000'000, 2'000'000'000, {} }), std::nullopt);
}

TEST(PictureFiles, PhotoIsShownAsItWasTaken)
{
    const auto photo = ModuleImages().decode(withOrientation(1));
    ASSERT_TRUE(photo);
    EXPECT_EQ(ModuleImages().size(withOrientation(1)), (PixelSize { 16, 8 }));
    EXPECT_EQ((PixelSize { photo->width, photo->height }), (PixelSize { 16, 8 }));
    EXPECT_EQ(pixelAt(*photo, 0, 0), black);
    EXPECT_EQ(pixelAt(*photo, 15, 7), white);
}

TEST(PictureFiles, TurnedPhotoIsShownUpright)
{
    const auto turnedRight = ModuleImages().decode(withOrientation(6));
    ASSERT_TRUE(turnedRight);
    EXPECT_EQ(ModuleImages().size(withOrientation(6)), (PixelSize { 8, 16 }));
    EXPECT_EQ((PixelSize { turnedRight->width, turnedRight->height }), (PixelSize { 8, 16 }));
    EXPECT_EQ(pixelAt(*turnedRight, 0, 0), black);
    EXPECT_EQ(pixelAt(*turnedRight, 7, 15), white);

    const auto turnedLeft = ModuleImages().decode(withOrientation(8));
    ASSERT_TRUE(turnedLeft);
    EXPECT_EQ(pixelAt(*turnedLeft, 0, 0), white);

    const auto upsideDown = ModuleImages().decode(withOrientation(3));
    ASSERT_TRUE(upsideDown);
    EXPECT_EQ(ModuleImages().size(withOrientation(3)), (PixelSize { 16, 8 }));
    EXPECT_EQ(pixelAt(*upsideDown, 0, 0), white);
}

TEST(PictureFiles, FirstFrameOfAnAnimationCounts)
{
    EXPECT_EQ(ModuleImages().size(animation), (PixelSize { 2, 1 }));
    const auto first = ModuleImages().decode(animation);
    ASSERT_TRUE(first);
    EXPECT_EQ(*first, bitmap(2, 1, { red, blue }));
}

TEST(PictureFiles, PicturesOfFiftyMegapixelsAreDecoded)
{
    const Bytes file = clearPng(10'000, 5'000);
    EXPECT_EQ(ModuleImages().size(file), (PixelSize { 10'000, 5'000 }));
    const auto decoded = ModuleImages().decode(file);
    ASSERT_TRUE(decoded);
    EXPECT_EQ((PixelSize { decoded->width, decoded->height }), (PixelSize { 10'000, 5'000 }));
    EXPECT_EQ(decoded->rgba.size(), 200'000'000u);
}

TEST(PictureFiles, PicturesOfMoreThanFiftyMegapixelsAreNotDecoded)
{
    const Bytes file = clearPng(10'000, 5'001);
    EXPECT_EQ(ModuleImages().size(file), (PixelSize { 10'000, 5'001 }));
    EXPECT_EQ(ModuleImages().decode(file), nullptr);
}

TEST(PictureFiles, WhatIsNoPictureGivesNothing)
{
    testing::internal::CaptureStderr();
    const ModuleImages images;
    for (const Bytes& file : { Bytes(), bytesOf("Carrier logos\n"), bytesOf("<svg"), bytesOf("BM"), bytesOf("GIF89a"),
             bytesOf("\xFF\xD8\xFF\xE0"), Bytes(1'000'000, 0), Bytes(1'000'000, 0xFF) }) {
        EXPECT_EQ(images.size(file), std::nullopt);
        EXPECT_EQ(images.decode(file), nullptr);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(PictureFiles, DamagedPicturesAreSurvived)
{
    const ModuleImages images;
    for (const Bytes& whole : { png(bitmap(2, 2, { red, blue, faint, clear })), withOrientation(6), animation }) {
        testing::internal::CaptureStderr();
        for (std::size_t length = 0; length < whole.size(); ++length)
            images.decode(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        Bytes changed = whole;
        for (std::uint8_t& byte : changed) {
            for (const int change : { 0x01, 0x10, 0x80, 0xFF }) {
                byte = static_cast<std::uint8_t>(byte ^ change);
                images.size(changed);
                const auto decoded = images.decode(changed);
                const std::size_t pixels =
                    decoded ? static_cast<std::size_t>(decoded->width) * static_cast<std::size_t>(decoded->height) : 0;
                EXPECT_EQ(decoded ? decoded->rgba.size() : 0, 4 * pixels);
                byte = static_cast<std::uint8_t>(byte ^ change);
            }
        }
        // libpng itself prints what it does not like.
        const std::string printed = testing::internal::GetCapturedStderr();
        EXPECT_EQ(printed.find("qt."), std::string::npos) << printed;
    }
}

TEST(PictureFiles, ScalingStretchesToTheSize)
{
    const auto scaled = ModuleImages().scaled(bitmap(2, 1, { red, blue }), { 8, 3 });
    ASSERT_TRUE(scaled);
    EXPECT_EQ((PixelSize { scaled->width, scaled->height }), (PixelSize { 8, 3 }));
    EXPECT_EQ(scaled->rgba.size(), 8u * 3 * 4);
    EXPECT_EQ(pixelAt(*scaled, 0, 0), red);
    EXPECT_EQ(pixelAt(*scaled, 7, 2), blue);
    const auto half = ModuleImages().scaled(bitmap(2, 1, { black, white }), { 1, 1 });
    ASSERT_TRUE(half);
    EXPECT_NEAR(half->rgba[0], 127, 1);
}

TEST(PictureFiles, ClearPixelsDoNotStainTheirNeighbours)
{
    const Pixel clearWhite { 255, 255, 255, 0 };
    const auto scaled = ModuleImages().scaled(bitmap(2, 1, { red, clearWhite }), { 1, 1 });
    ASSERT_TRUE(scaled);
    EXPECT_NEAR(scaled->rgba[0], 255, 2);
    EXPECT_NEAR(scaled->rgba[1], 0, 2);
    EXPECT_NEAR(scaled->rgba[3], 127, 1);
}

TEST(PictureFiles, EmptyAndHugeSizesGiveNull)
{
    const ModuleImages images;
    const Bitmap picture = bitmap(1, 1, { red });
    for (const PixelSize size : { PixelSize { 0, 1 }, PixelSize { 1, 0 }, PixelSize { -1, 1 },
             PixelSize { 10'000, 5'001 }, PixelSize { 2'000'000'000, 2'000'000'000 } })
        EXPECT_EQ(images.scaled(picture, size), nullptr) << size;
    EXPECT_EQ(images.scaled({}, { 1, 1 }), nullptr);
    EXPECT_EQ(images.scaled({ 2, 2, { 0 } }, { 1, 1 }), nullptr);
}
