#pragma once

#include "Pictures/PictureModule.h"

/// Pictures by way of a module that is loaded when it is first needed: PNG, JPEG, GIF and BMP, told apart by content.
/// The size of a PNG, which every icon of the product is, and of a GIF needs no module. Without the module nothing else
/// counts as a picture.
///
/// Pictures of more than 50 megapixels are not decoded and not made.
class ModuleImages final : public Images {
public:
    std::optional<PixelSize> size(const Bytes& file) const override;
    std::shared_ptr<const Bitmap> decode(const Bytes& file) const override;
    /// Nothing, too, for a bitmap whose bytes are not as many as its size says.
    std::optional<Bytes> encodePng(const Bitmap& bitmap) const override;
    /// Null for a bitmap that encodePng refuses, and for a size that is empty or too large.
    std::shared_ptr<const Bitmap> scaled(const Bitmap& bitmap, PixelSize size) const override;
};

/// The icon, by way of the same module, or a neutral one; null where the module is missing.
std::shared_ptr<const Bitmap> drawnIcon(const IconRequest& request);
