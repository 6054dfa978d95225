#include "PngMaker.h"

#include <zlib.h>

namespace {

constexpr int channels = 4;
constexpr std::uint8_t redGreenBlueAlpha = 6;

void addNumber(Bytes& bytes, std::uint32_t number)
{
    for (const int shift : { 24, 16, 8, 0 })
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

void add(Bytes& bytes, const Bytes& more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

Bytes deflated(const Bytes& bytes)
{
    uLongf length = compressBound(bytes.size());
    Bytes result(length);
    compress2(result.data(), &length, bytes.data(), bytes.size(), Z_BEST_SPEED);
    result.resize(length);
    return result;
}

} // namespace

Bytes pngChunk(const std::string& type, const Bytes& content)
{
    Bytes named(type.begin(), type.end());
    add(named, content);
    Bytes chunk;
    addNumber(chunk, static_cast<std::uint32_t>(content.size()));
    add(chunk, named);
    addNumber(chunk, static_cast<std::uint32_t>(crc32(0, named.data(), static_cast<uInt>(named.size()))));
    return chunk;
}

Bytes clearPng(int width, int height, int bits, const Bytes& more)
{
    Bytes header;
    addNumber(header, static_cast<std::uint32_t>(width));
    addNumber(header, static_cast<std::uint32_t>(height));
    add(header, { static_cast<std::uint8_t>(bits), redGreenBlueAlpha, 0, 0, 0 });
    const std::size_t row = 1 + static_cast<std::size_t>(width) * channels * static_cast<std::size_t>(bits / 8);
    Bytes file { 0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n' };
    add(file, pngChunk("IHDR", header));
    add(file, more);
    add(file, pngChunk("IDAT", deflated(Bytes(row * static_cast<std::size_t>(height)))));
    add(file, pngChunk("IEND", {}));
    return file;
}

Bytes pngText(std::size_t length)
{
    Bytes content { 'k', 0, 0 };
    add(content, deflated(Bytes(length, 'x')));
    return pngChunk("zTXt", content);
}
