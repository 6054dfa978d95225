#include "TDCarrierLogos.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSString.h"
#include "libtandem/TDProduct.h"
#include "libtandem/TDUtils.h"

namespace {

constexpr const char* placeholder = "noimage3.png";
constexpr long noSuchFileError = 4;

/// A name from outside may hold path separators; as part of a file name they would lead out of the logo directory.
bool staysInDirectory(const std::optional<std::string>& name)
{
    return !name || (name->find('/') == std::string::npos && name->find('\0') == std::string::npos);
}

std::string pathOfLogo(const std::optional<std::string>& name)
{
    return stringWithFormat("%@/%@.png", { TDProduct::logoDirectory(), name });
}

/// The ASCII letters of the name in lower case, and nothing else of it.
std::string normalised(const std::string& carrierName)
{
    std::string letters;
    for (const char c : carrierName) {
        if (c >= 'A' && c <= 'Z')
            letters += static_cast<char>(c - 'A' + 'a');
        else if (c >= 'a' && c <= 'z')
            letters += c;
    }
    return letters;
}

} // namespace

std::string pathOfUserLogo(const std::optional<std::string>& simKey)
{
    return pathOfLogo(simKey);
}

void saveImage(const std::optional<std::string>& name, const std::shared_ptr<UIImage>& image)
{
    const std::string directory = TDProduct::logoDirectory();
    NSFileManager& manager = NSFileManager::defaultManager();
    if (!manager.fileExistsAtPath(directory)) {
        if (const auto error = manager.createDirectoryAtPath(directory)) {
            TDUtils::logMessage("***** Error while creating directory at %@ and error: %@", { directory, error });
            return;
        }
    }
    const std::string path = stringByAppendingPathComponent(directory, stringWithFormat("%@.png", { name }));
    TDUtils::logMessage("***** Saving image to : %@", { path });
    if (!staysInDirectory(name))
        return;
    if (const auto png = UIImagePNGRepresentation(image))
        writeToFile(*png, path, Atomically::Yes);
}

std::shared_ptr<UIImage> getImage(const std::string& carrierName, const std::string& simKey)
{
    const auto userLogo = staysInDirectory(simKey) ? getImageFromPath(pathOfUserLogo(simKey)) : nullptr;
    TDUtils::logMessage("***** Trying to gett default image first from location '%@'", { TDProduct::logoDirectory() });
    if (userLogo)
        return userLogo;
    const std::string carrierPath = pathOfLogo(normalised(carrierName));
    TDUtils::logMessage("***** Trying get image from cache: %@", { carrierPath });
    if (auto carrierLogo = getImageFromPath(carrierPath))
        return carrierLogo;
    return getImageFromPath(stringByAppendingPathComponent(TDProduct::bundlePath(), placeholder));
}

std::shared_ptr<UIImage> getImageFromPath(const std::string& path)
{
    return UIImage::imageWithContentsOfFile(path);
}

std::shared_ptr<NSError> removeUserLogo(const std::optional<std::string>& simKey)
{
    if (!staysInDirectory(simKey))
        return std::make_shared<NSError>(NSError::cocoaDomain, noSuchFileError, "“" + *simKey + "” names no logo.");
    return NSFileManager::defaultManager().removeItemAtPath(pathOfUserLogo(simKey));
}

bool hasDefaultImageSetup(const std::optional<std::string>& simKey)
{
    return staysInDirectory(simKey) && NSFileManager::defaultManager().fileExistsAtPath(pathOfUserLogo(simKey));
}
