#pragma once

#include "Phone/Images.h"

#include <memory>
#include <string>
#include <vector>

/// An app's icon, as its desktop entry names it, and where to look for it.
struct IconRequest {
    /// The icon's name, or the absolute path of its file; empty for an app that has none.
    std::string name;
    /// The theme to look in first; empty for hicolor alone.
    std::string theme;
    /// The folders of themes, the first before the others.
    std::vector<std::string> themeFolders;
    /// The folders of icons that belong to no theme.
    std::vector<std::string> looseFolders;
    /// The side of the square that the icon fills.
    double points = 0;
    /// Pixels a point.
    double scale = 1;
};

/// What the module of pictures offers. It is a module of its own because Qt, which does the work, takes longer to load
/// than a command takes that shows no picture.

/// Lives as long as the process.
extern "C" const Images* tandemImages();
/// Sets `picture` to the icon or, where there is none that can be drawn, to a neutral one.
extern "C" void tandemDrawIcon(const IconRequest& request, std::shared_ptr<const Bitmap>& picture);
