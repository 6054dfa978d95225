#pragma once

#include "Phone/Images.h"

/// Pictures by way of Qt's image plug-ins, told apart by content: PNG, JPEG, GIF, BMP and what else is installed. Needs
/// no application object. Of an animation or a set of icons the first picture counts.
///
/// Pictures of more than 50 megapixels are not decoded and not made; their pixels are never allocated.
class QtImages final : public Images {
public:
    QtImages();

    std::optional<PixelSize> size(const Bytes& file) const override;
    std::shared_ptr<const Bitmap> decode(const Bytes& file) const override;
    /// Nothing, too, for a bitmap whose bytes are not as many as its size says.
    std::optional<Bytes> encodePng(const Bitmap& bitmap) const override;
    /// Null for a bitmap that encodePng refuses, and for a size that is empty or too large.
    std::shared_ptr<const Bitmap> scaled(const Bitmap& bitmap, PixelSize size) const override;
};
