#pragma once

#include "Phone/Images.h"

#include <memory>
#include <string>

/// The icons of the phone's apps, drawn when they are shown. An image that stands for one holds the app's name alone,
/// so rows are built without looking for icons.
class AppIcons {
public:
    virtual ~AppIcons() = default;

    /// The icon of the app as a square of that many points, with `scale` pixels a point; null when it cannot be drawn.
    virtual std::shared_ptr<const Bitmap> icon(const std::string& app, double points, double scale) = 0;
};
