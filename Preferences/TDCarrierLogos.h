#pragma once

#include "Foundation/NSError.h"
#include "UIKit/UIImage.h"

#include <optional>
#include <string>

/// The pictures that stand for the SIMs: a folder of PNG files, one for each SIM that the user gave a logo, and those
/// of carriers, which others put there. Every call works on the files; nothing is kept. An absent key stands for no
/// SIM: its logo has the name that formats print for null.

/// The logo that the user gave the SIM.
std::string pathOfUserLogo(const std::optional<std::string>& simKey);

/// Stores the picture as the SIM's logo, at its own size, in place of an earlier one. Makes the folder where there is
/// none; when that fails it is logged, and any other failure is silent. The earlier logo stays then.
void saveImage(const std::optional<std::string>& name, const std::shared_ptr<UIImage>& image);

/// The picture for a SIM: the user's logo, else the carrier's, else the placeholder, else null.
std::shared_ptr<UIImage> getImage(const std::string& carrierName, const std::string& simKey);

/// Null when the file is missing or no picture.
std::shared_ptr<UIImage> getImageFromPath(const std::string& path);

/// Takes the user's logo of the SIM away; why it could not in the result, null on success.
std::shared_ptr<NSError> removeUserLogo(const std::optional<std::string>& simKey);

/// Something stands where the user's logo of that SIM would be, whether it is a picture or not.
bool hasDefaultImageSetup(const std::optional<std::string>& simKey);
