#pragma once

#include "Phone/Images.h"

/// Pictures by way of Qt's image plug-ins: PNG, JPEG, GIF and BMP, told apart by content. Needs no application object.
/// Of an animation the first picture counts.
///
/// No picture takes much more memory than its pixels: at most 64 megabytes more or, when that is more, 64 times the
/// length of its file. Those that would are not decoded.
class QtImages final : public Images {
public:
    QtImages();

    std::optional<PixelSize> size(const Bytes& file) const override;
    std::shared_ptr<const Bitmap> decode(const Bytes& file) const override;
    std::optional<Bytes> encodePng(const Bitmap& bitmap) const override;
    std::shared_ptr<const Bitmap> scaled(const Bitmap& bitmap, PixelSize size) const override;
};
