#include "Cost.h"
#include "Pictures/ModuleImages.h"
#include "PngMaker.h"
#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace {

constexpr double mostMilliseconds = 500;
constexpr double mostMegabytes = 64;
constexpr std::size_t scanStart = 223;
constexpr std::size_t scanEnd = 234;

Bytes fromHex(std::string_view digits)
{
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16)));
    return bytes;
}

void putNumber16(Bytes& bytes, std::size_t at, int number)
{
    bytes.at(at) = static_cast<std::uint8_t>(number >> 8);
    bytes.at(at + 1) = static_cast<std::uint8_t>(number);
}

/// A grey progressive picture in six scans, the fifth of which is eleven bytes long and may be repeated. Decoders take
/// what is missing of a larger picture for grey.
Bytes progressiveJpeg(int width, int height, int moreScans = 0)
{
    Bytes file = fromHex("ffd8ffe000104a46494600010100000100010000ffdb004300080606070605080707070909080a0c140d0c0b0b0c1"
                         "912130f141d1a1f1e1d1a1c1c20242e2720222c231c1c2837292c30313434341f27393d38323c2e333432ffc2000b"
                         "080010001001011100ffc40014000100000000000000000000000000000000ffda00080101000000010fffc400141"
                         "00100000000000000000000000000000020ffda00080101000105021fffc400141001000000000000000000000000"
                         "00000020ffda0008010100063f021fffc40014100100000000000000000000000000000020ffda0008010100013f2"
                         "11fffda00080101000000100fffc40014100100000000000000000000000000000020ffda0008010100013f101fff"
                         "d9");
    putNumber16(file, 94, height);
    putNumber16(file, 96, width);
    const Bytes scan(file.begin() + scanStart, file.begin() + scanEnd);
    Bytes scans;
    for (int i = 0; i < moreScans; ++i)
        scans.insert(scans.end(), scan.begin(), scan.end());
    file.insert(file.begin() + scanStart, scans.begin(), scans.end());
    return file;
}

/// As a camera writes it that is held upright.
Bytes turned(Bytes jpeg)
{
    const Bytes exif { 0xFF, 0xE1, 0, 34, 'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8, 0, 1, 0x01, 0x12, 0, 3,
        0, 0, 0, 1, 0, 6, 0, 0, 0, 0, 0, 0 };
    jpeg.insert(jpeg.begin() + 2, exif.begin(), exif.end());
    return jpeg;
}

/// One black frame at that place in a picture of that size.
Bytes gif(int width, int height, int left, int top, int frameWidth, int frameHeight)
{
    Bytes file = fromHex("47494638396100000000800000ff00000000ff2c00000000000000000002024401003b");
    for (const auto& [at, number] :
        { std::pair(6, width), { 8, height }, { 20, left }, { 22, top }, { 24, frameWidth }, { 26, frameHeight } }) {
        file[static_cast<std::size_t>(at)] = static_cast<std::uint8_t>(number);
        file[static_cast<std::size_t>(at) + 1] = static_cast<std::uint8_t>(number >> 8);
    }
    return file;
}

class HostilePictures : public ::testing::Test {
protected:
    // The module is loaded before anything is measured.
    HostilePictures() { images.decode(clearPng(1, 1)); }

    bool isDecoded(const Bytes& file) { return images.decode(file) != nullptr; }

    /// What it takes beside the pixels to ask for the size and to decode, whatever comes of it.
    void expectLittleCost(const Bytes& file)
    {
        double pixels = 0;
        const Cost cost = costOf([&] {
            images.size(file);
            const auto bitmap = images.decode(file);
            pixels = bitmap ? static_cast<double>(bitmap->rgba.size()) / (1 << 20) : 0;
        });
        if (isSanitized)
            return;
        EXPECT_LT(cost.milliseconds, mostMilliseconds);
        EXPECT_LT(cost.megabytes - pixels, mostMegabytes);
    }

    ModuleImages images;
};

TEST_F(HostilePictures, PngOfWhichAnythingIsMissing)
{
    const Bytes whole = clearPng(3, 2);
    EXPECT_TRUE(isDecoded(whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Bytes file(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(images.size(file), std::nullopt) << length;
        EXPECT_FALSE(isDecoded(file)) << length;
    }
}

TEST_F(HostilePictures, PngWithAChunkLongerThanTheFile)
{
    Bytes file = clearPng(3, 2, 8, pngChunk("iTXt", { 'k', 0, 0, 0, 0, 0 }));
    file.at(33) = 0x7F;
    EXPECT_EQ(images.size(file), std::nullopt);
    EXPECT_FALSE(isDecoded(file));
    expectLittleCost(file);
}

TEST_F(HostilePictures, PngWhoseTextsUnfoldToAGigabyte)
{
    Bytes texts;
    for (int i = 0; i < 25; ++i) {
        const Bytes text = pngText(7'900'000);
        texts.insert(texts.end(), text.begin(), text.end());
    }
    const Bytes file = clearPng(3, 2, 8, texts);
    EXPECT_TRUE(isDecoded(file));
    expectLittleCost(file);
}

TEST_F(HostilePictures, PngOfManyPixels)
{
    for (const auto& [side, bits] : { std::pair(4096, 8), { 2800, 16 } }) {
        const Bytes file = clearPng(side, side, bits);
        EXPECT_TRUE(isDecoded(file));
        expectLittleCost(file);
    }
}

TEST_F(HostilePictures, PngThatTakesTwiceTheMemoryOfItsPixels)
{
    EXPECT_TRUE(isDecoded(clearPng(2800, 2800, 16)));
    EXPECT_FALSE(isDecoded(clearPng(4000, 4000, 16)));
}

TEST_F(HostilePictures, JpegOfMoreScansThanAnyCameraWrites)
{
    EXPECT_TRUE(isDecoded(progressiveJpeg(16, 16)));
    EXPECT_TRUE(isDecoded(progressiveJpeg(16, 16, 58)));
    EXPECT_FALSE(isDecoded(progressiveJpeg(16, 16, 59)));
    EXPECT_EQ(images.size(progressiveJpeg(16, 16, 59)), std::nullopt);
    expectLittleCost(progressiveJpeg(4000, 4000, 12'000));
}

TEST_F(HostilePictures, JpegThatKeepsManyCoefficients)
{
    EXPECT_TRUE(isDecoded(progressiveJpeg(4096, 4096)));
    expectLittleCost(progressiveJpeg(4096, 4096, 58));
    EXPECT_FALSE(isDecoded(progressiveJpeg(7000, 7000)));
    expectLittleCost(progressiveJpeg(7000, 7000));
}

TEST_F(HostilePictures, TurnedJpegThatTakesTwiceTheMemoryOfItsPixels)
{
    EXPECT_TRUE(isDecoded(turned(progressiveJpeg(16, 16))));
    EXPECT_TRUE(isDecoded(turned(progressiveJpeg(3000, 3000))));
    EXPECT_FALSE(isDecoded(turned(progressiveJpeg(4096, 4096))));
    expectLittleCost(turned(progressiveJpeg(4096, 4096)));
}

TEST_F(HostilePictures, GifWhoseFrameIsLargerThanThePicture)
{
    EXPECT_TRUE(isDecoded(gif(2, 1, 0, 0, 2, 1)));
    for (const Bytes& file : { gif(2, 1, 0, 0, 32'767, 16'384), gif(2, 1, 0, 0, 2, 2), gif(2, 1, 1, 0, 2, 1),
             gif(2, 1, 0, 1, 2, 1), gif(0, 0, 0, 0, 32'767, 16'384) }) {
        EXPECT_EQ(images.size(file), std::nullopt);
        EXPECT_FALSE(isDecoded(file));
        expectLittleCost(file);
    }
}

TEST_F(HostilePictures, GifThatTakesMoreMemoryThanItsPixels)
{
    EXPECT_TRUE(isDecoded(gif(2800, 2800, 0, 0, 2800, 2800)));
    EXPECT_FALSE(isDecoded(gif(7000, 7000, 0, 0, 7000, 7000)));
    EXPECT_FALSE(isDecoded(gif(7000, 7000, 0, 0, 88, 7000)));
    expectLittleCost(gif(2800, 2800, 0, 0, 2800, 2800));
    expectLittleCost(gif(7000, 7000, 0, 0, 7000, 7000));
}

TEST_F(HostilePictures, FormatsThatNoPhotoHasAreNoPictures)
{
    for (const char* file : { "P6 2 1 255\nabcdef", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>",
             "/* XPM */\nstatic char* x[] = {\n\"1 1 1 1\",\n\"a c red\",\n\"a\"};\n" }) {
        EXPECT_EQ(images.size(bytesOf(file)), std::nullopt) << file;
        EXPECT_FALSE(isDecoded(bytesOf(file))) << file;
    }
}

} // namespace
