#pragma once

#include <string>

/// The extent of a text, in points.
struct TextSize {
    double width = 0;
    double height = 0;
};

/// Measures texts with the fonts that show them. A phone without one has its texts estimated.
class TextMeasure {
public:
    virtual ~TextMeasure() = default;
    /// The size of the text broken into lines no wider than `width` points; a width of 0 or less sets no limit.
    virtual TextSize measure(
        const std::string& text, const std::string& fontName, double fontSize, double width) const = 0;
};
