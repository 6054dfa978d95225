#pragma once

#include "UIKit/UIColor.h"

/// The product's blue: bars, enabled texts, tinted icons, sliders, switches, banners.
inline constexpr UIColor accentColor { 28 / 255.0F, 77 / 255.0F, 170 / 255.0F, 1 };
