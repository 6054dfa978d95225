#include "Pictures/ModuleImages.h"

#include "Phone/Phone.h"
#include "Pictures/PictureFile.h"

#include <dlfcn.h>
#include <filesystem>

namespace {

constexpr const char* moduleName = "libtandem-pictures.so";
constexpr const char* imagesName = "tandemImages";
constexpr const char* drawIconName = "tandemDrawIcon";

/// The module lies beside the platform's library, built or installed. Null where it is missing.
void* loadModule()
{
    Dl_info platform {};
    if (!dladdr(reinterpret_cast<const void*>(&Phone::current), &platform) || !platform.dli_fname)
        return nullptr;
    const auto file = std::filesystem::absolute(platform.dli_fname).replace_filename(moduleName);
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* symbol(const char* name)
{
    static void* const module = loadModule();
    return module ? dlsym(module, name) : nullptr;
}

/// Null where the module is missing.
const Images* images()
{
    static const auto function = reinterpret_cast<decltype(&tandemImages)>(symbol(imagesName));
    return function ? function() : nullptr;
}

} // namespace

std::optional<PixelSize> ModuleImages::size(const Bytes& file) const
{
    switch (formatOfPicture(file)) {
    case PictureFormat::None:
        return std::nullopt;
    case PictureFormat::Png:
        return sizeOfPng(file);
    case PictureFormat::Gif:
        return sizeOfGif(file);
    default:
        return images() ? images()->size(file) : std::nullopt;
    }
}

std::shared_ptr<const Bitmap> ModuleImages::decode(const Bytes& file) const
{
    return formatOfPicture(file) != PictureFormat::None && images() ? images()->decode(file) : nullptr;
}

std::optional<Bytes> ModuleImages::encodePng(const Bitmap& bitmap) const
{
    return images() ? images()->encodePng(bitmap) : std::nullopt;
}

std::shared_ptr<const Bitmap> ModuleImages::scaled(const Bitmap& bitmap, PixelSize size) const
{
    return images() ? images()->scaled(bitmap, size) : nullptr;
}

std::shared_ptr<const Bitmap> drawnIcon(const IconRequest& request)
{
    static const auto function = reinterpret_cast<decltype(&tandemDrawIcon)>(symbol(drawIconName));
    std::shared_ptr<const Bitmap> picture;
    if (function)
        function(request, picture);
    return picture;
}
