#include "Pictures/PictureFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

namespace {

using namespace std::string_view_literals;

constexpr std::string_view pngSignature = "\x89PNG\r\n\x1a\n"sv;
constexpr std::string_view jpegSignature = "\xFF\xD8\xFF"sv;
constexpr std::string_view gifSignature = "GIF8"sv;
constexpr std::string_view bmpSignature = "BM"sv;

// PNG: a chunk is its length, its type, its content and its checksum.
constexpr std::size_t chunkFrame = 12;
constexpr std::size_t headerLength = 13;
constexpr std::string_view headerChunk = "IHDR"sv;
constexpr std::string_view lastChunk = "IEND"sv;
constexpr std::array pixelChunks { headerChunk, "PLTE"sv, "tRNS"sv, "IDAT"sv, lastChunk };
constexpr std::uint32_t greatestPngSide = 0x7FFFFFFF;

// JPEG: a segment is 0xFF, its marker and, with most, its length and content.
constexpr std::uint8_t markerStart = 0xFF;
constexpr std::uint8_t endOfImage = 0xD9;
constexpr std::uint8_t startOfScan = 0xDA;
constexpr std::uint8_t baselineFrame = 0xC0;
constexpr std::uint8_t progressiveFrame = 0xC2;
constexpr std::size_t frameComponents = 6;
constexpr std::size_t bytesPerBlock = 128;
constexpr std::size_t blockSide = 8;
/// Progressive pictures have about ten, and encoders that try hard some twenty.
constexpr int mostScans = 64;

// GIF
constexpr std::size_t gifHeader = 13;
constexpr std::uint8_t hasTable = 0x80;
constexpr std::uint8_t gifExtension = 0x21;
constexpr std::uint8_t gifFrame = 0x2C;

// SVG
/// Bytes of a drawing, each counted as often as it may be drawn: some parts take 5 microseconds a byte.
constexpr double mostDrawn = 96U << 10U;
/// The same, times the length of the drawing: others take as long as the square of their length. Without parts that are
/// used again, this is a drawing of 32 kilobytes.
constexpr double mostDrawnBySquare = 1.5e9;
/// Elements times rules of style that may apply to them.
constexpr std::size_t mostStyling = 20'000;
constexpr std::array refusedParts { "<!ENTITY"sv, "<image"sv, "<textArea"sv };

std::string_view textOf(const Bytes& file)
{
    return { reinterpret_cast<const char*>(file.data()), file.size() };
}

std::size_t number16(const std::uint8_t* at)
{
    return static_cast<std::size_t>(at[0]) << 8U | at[1];
}

std::size_t smallNumber16(const std::uint8_t* at)
{
    return static_cast<std::size_t>(at[1]) << 8U | at[0];
}

std::uint32_t number32(const std::uint8_t* at)
{
    return static_cast<std::uint32_t>(number16(at) << 16U | number16(at + 2));
}

/// Calls `visit` with the type of each chunk and the whole chunk. True when the last one is there and nothing reached
/// out of the file.
template <class Visit>
bool visitChunks(const Bytes& file, Visit visit)
{
    const std::string_view text = textOf(file);
    std::size_t at = pngSignature.size();
    while (text.starts_with(pngSignature) && text.size() - at >= chunkFrame) {
        const std::size_t length = number32(file.data() + at);
        if (length > text.size() - at - chunkFrame)
            return false;
        const std::string_view chunk = text.substr(at, length + chunkFrame);
        const std::string_view type = chunk.substr(4, 4);
        visit(type, chunk);
        if (type == lastChunk)
            return true;
        at += chunk.size();
    }
    return false;
}

bool makesPixels(std::string_view type)
{
    return std::ranges::find(pixelChunks, type) != pixelChunks.end();
}

struct JpegFrame {
    int scans = 0;
    /// Of the header that says how large the picture is; null without one.
    const std::uint8_t* header = nullptr;
    std::size_t headerLength = 0;
    std::uint8_t marker = 0;
    /// In its first scan.
    std::size_t components = 0;
};

bool isFrameMarker(std::uint8_t marker)
{
    // Among the sixteen are three that are tables.
    return marker >= baselineFrame && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

/// Without a length: a byte of the picture, the restart of a scan, the start of the file, filling.
bool standsAlone(std::uint8_t marker)
{
    return marker == 0 || marker == 1 || (marker >= 0xD0 && marker <= 0xD8) || marker == markerStart;
}

void addSegment(JpegFrame& frame, std::uint8_t marker, const std::uint8_t* content, std::size_t length)
{
    if (marker == startOfScan && ++frame.scans == 1 && length > 0)
        frame.components = content[0];
    if (!isFrameMarker(marker) || frame.header)
        return;
    frame.header = content;
    frame.headerLength = length;
    frame.marker = marker;
}

JpegFrame frameOfJpeg(const Bytes& file)
{
    JpegFrame frame;
    const std::uint8_t* const end = file.data() + file.size();
    for (const auto* at = file.data(); (at = std::find(at, end, markerStart)) != end && end - at >= 4;) {
        const std::uint8_t marker = at[1];
        if (marker == endOfImage)
            break;
        if (standsAlone(marker)) {
            at += marker == markerStart ? 1 : 2;
            continue;
        }
        const std::size_t length = number16(at + 2);
        if (length < 2 || length > static_cast<std::size_t>(end - at - 2))
            break;
        addSegment(frame, marker, at + 4, length - 2);
        at += 2 + length;
    }
    return frame;
}

bool isUsualJpeg(const Bytes& file)
{
    const JpegFrame frame = frameOfJpeg(file);
    return frame.scans <= mostScans && frame.marker <= progressiveFrame;
}

std::size_t blocks(std::size_t pixels, std::size_t sampling, std::size_t greatestSampling)
{
    const std::size_t unit = blockSide * greatestSampling;
    return (pixels + unit - 1) / unit * sampling;
}

/// Of the first frame; null when the picture ends before it.
const std::uint8_t* frameOfGif(const Bytes& file)
{
    if (file.size() < gifHeader)
        return nullptr;
    const std::uint8_t flags = file[10];
    std::size_t at = gifHeader + (flags & hasTable ? std::size_t { 3 } << ((flags & 7U) + 1) : 0);
    while (at < file.size() && file[at] == gifExtension) {
        // Blocks with a length each, the last of which is empty.
        at += 2;
        while (at < file.size() && file[at] > 0)
            at += file[at] + std::size_t { 1 };
        ++at;
    }
    const bool isThere = file.size() > 9 && at < file.size() - 9 && file[at] == gifFrame;
    return isThere ? file.data() + at : nullptr;
}

std::size_t count(std::string_view text, std::string_view part)
{
    std::size_t found = 0;
    for (auto at = text.find(part); at != text.npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

/// How often a part may be drawn, about, when parts are used that use others in turn: three times as often with every
/// three uses.
double timesDrawn(std::string_view drawing)
{
    return std::pow(3, static_cast<double>(count(drawing, "<use") + count(drawing, ":use") + 1) / 3);
}

} // namespace

PictureFormat formatOfPicture(const Bytes& file)
{
    const std::string_view text = textOf(file);
    if (text.starts_with(pngSignature))
        return PictureFormat::Png;
    if (text.starts_with(jpegSignature))
        return PictureFormat::Jpeg;
    if (text.starts_with(gifSignature))
        return PictureFormat::Gif;
    return text.starts_with(bmpSignature) ? PictureFormat::Bmp : PictureFormat::None;
}

std::optional<PixelSize> sizeOfPng(const Bytes& file)
{
    const std::size_t headerAt = pngSignature.size() + 8;
    const bool isWhole = visitChunks(file, [](auto...) {});
    if (!isWhole || !textOf(file).substr(headerAt - 4).starts_with(headerChunk)
        || number32(file.data() + pngSignature.size()) != headerLength)
        return std::nullopt;
    const std::uint32_t width = number32(file.data() + headerAt);
    const std::uint32_t height = number32(file.data() + headerAt + 4);
    if (width == 0 || height == 0 || width > greatestPngSide || height > greatestPngSide)
        return std::nullopt;
    return PixelSize { static_cast<int>(width), static_cast<int>(height) };
}

std::optional<PixelSize> sizeOfGif(const Bytes& file)
{
    const std::uint8_t* frame = formatOfPicture(file) == PictureFormat::Gif ? frameOfGif(file) : nullptr;
    if (!frame)
        return std::nullopt;
    const std::size_t width = smallNumber16(file.data() + 6);
    const std::size_t height = smallNumber16(file.data() + 8);
    if (width == 0 || height == 0 || smallNumber16(frame + 1) + smallNumber16(frame + 5) > width
        || smallNumber16(frame + 3) + smallNumber16(frame + 7) > height)
        return std::nullopt;
    return PixelSize { static_cast<int>(width), static_cast<int>(height) };
}

Bytes withoutNotes(const Bytes& png)
{
    Bytes kept(pngSignature.begin(), pngSignature.end());
    kept.reserve(png.size());
    visitChunks(png, [&](std::string_view type, std::string_view chunk) {
        if (makesPixels(type))
            kept.insert(kept.end(), chunk.begin(), chunk.end());
    });
    return kept;
}

std::size_t lengthOfNotes(const Bytes& png)
{
    std::size_t length = 0;
    visitChunks(
        png, [&](std::string_view type, std::string_view chunk) { length += makesPixels(type) ? 0 : chunk.size(); });
    return length;
}

std::size_t coefficientBytes(const Bytes& file)
{
    const JpegFrame frame = formatOfPicture(file) == PictureFormat::Jpeg ? frameOfJpeg(file) : JpegFrame();
    if (frame.headerLength < frameComponents)
        return 0;
    const std::size_t components = std::min<std::size_t>(frame.header[5], (frame.headerLength - frameComponents) / 3);
    if (frame.marker != progressiveFrame && frame.components >= components)
        return 0;
    const std::uint8_t* const samplings = frame.header + frameComponents + 1;
    std::size_t across = 1;
    std::size_t down = 1;
    for (std::size_t i = 0; i < components; ++i) {
        across = std::max<std::size_t>(across, samplings[3 * i] >> 4U);
        down = std::max<std::size_t>(down, samplings[3 * i] & 15U);
    }
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < components; ++i) {
        bytes += bytesPerBlock * blocks(number16(frame.header + 3), samplings[3 * i] >> 4U, across)
            * blocks(number16(frame.header + 1), samplings[3 * i] & 15U, down);
    }
    return bytes;
}

bool isHarmlessPicture(const Bytes& file)
{
    switch (formatOfPicture(file)) {
    case PictureFormat::Png:
        return sizeOfPng(file).has_value();
    case PictureFormat::Jpeg:
        return isUsualJpeg(file);
    case PictureFormat::Gif:
        return sizeOfGif(file).has_value();
    case PictureFormat::Bmp:
        return true;
    default:
        return false;
    }
}

bool isDrawing(const Bytes& file)
{
    const std::string_view text = textOf(file);
    const std::size_t start = text.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    return start != text.npos && text[start] == '<';
}

bool isHarmlessDrawing(const Bytes& file)
{
    const std::string_view text = textOf(file);
    // A zero byte is part of a character of another encoding.
    if (!isDrawing(file) || text.find('\0') != text.npos)
        return false;
    if (std::ranges::any_of(refusedParts, [text](std::string_view part) { return text.find(part) != text.npos; }))
        return false;
    const double drawn = static_cast<double>(text.size()) * timesDrawn(text);
    return drawn <= mostDrawn && drawn * static_cast<double>(text.size()) <= mostDrawnBySquare
        && count(text, "<") * count(text, "{") <= mostStyling;
}
