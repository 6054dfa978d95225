#pragma once

#include "Runtime/Value.h"

#include <memory>
#include <optional>

/// Pixels, eight bits each of red, green, blue and alpha, not premultiplied, row by row from the top.
struct Bitmap {
    int width = 0;
    int height = 0;
    Bytes rgba;
};

struct PixelSize {
    int width = 0;
    int height = 0;
    bool operator==(const PixelSize&) const = default;
};

/// Decodes, encodes and scales pictures.
class Images {
public:
    virtual ~Images() = default;

    /// The size of a picture file, upright, without decoding its pixels; nothing when it is no picture.
    virtual std::optional<PixelSize> size(const Bytes& file) const = 0;
    /// The pixels, upright; null when the bytes are no picture or one too large to be shown.
    virtual std::shared_ptr<const Bitmap> decode(const Bytes& file) const = 0;
    /// A PNG file, or nothing for a picture without pixels.
    virtual std::optional<Bytes> encodePng(const Bitmap& bitmap) const = 0;
    /// The picture stretched to that size, smoothed.
    virtual std::shared_ptr<const Bitmap> scaled(const Bitmap& bitmap, PixelSize size) const = 0;
};
