#include "UIKit/UIFont.h"

#include "Foundation/NSString.h"
#include "Phone/Phone.h"

#include <algorithm>
#include <cmath>

namespace {

/// Of the font size: the height of a line, and the mean width of a character in Latin texts.
constexpr double lineHeightRatio = 1.2;
constexpr double characterWidthRatio = 0.5;

TextSize estimatedSize(const std::string& text, const UIFont& font, double width)
{
    const double lineHeight = std::ceil(font.pointSize * lineHeightRatio);
    TextSize size;
    for (const std::string& line : componentsSeparatedByString(text, '\n')) {
        const double lineWidth =
            std::ceil(static_cast<double>(utf16Length(line)) * font.pointSize * characterWidthRatio);
        const double rows = width > 0 ? std::max(1.0, std::ceil(lineWidth / width)) : 1;
        size.width = std::max(size.width, width > 0 ? std::min(width, lineWidth) : lineWidth);
        size.height += rows * lineHeight;
    }
    return size;
}

} // namespace

double UIFont::lineHeight() const
{
    return sizeOfText("X", *this, 0).height;
}

TextSize sizeOfText(const std::string& text, const UIFont& font, double width)
{
    if (const auto& measure = Phone::current().textMeasure)
        return measure->measure(text, font.name, font.pointSize, width);
    return estimatedSize(text, font, width);
}
