#pragma once

/// The system's appearance, light or dark, as it is now.
class Appearance {
public:
    virtual ~Appearance() = default;
    virtual bool isDark() const = 0;
};
