#pragma once

#include <string>

/// A font by name and size in points. The system font goes by the name "System".
struct UIFont {
    std::string name;
    double pointSize = 0;

    static UIFont systemFontOfSize(double size) { return { systemFontName, size }; }
    static UIFont fontWithName_size(std::string name, double size) { return { std::move(name), size }; }
    /// The height of one line, in points.
    double lineHeight() const;

    static constexpr const char* systemFontName = "System";
    bool operator==(const UIFont&) const = default;
};

enum class NSTextAlignment { Left = 0, Center = 1, Right = 2, Justified = 3, Natural = 4 };

struct TextSize;
/// The size of a text broken into lines no wider than `width` points, 0 for no limit: measured with the phone's fonts,
/// or estimated where the phone cannot measure.
TextSize sizeOfText(const std::string& text, const UIFont& font, double width);
