#pragma once

/// How the user wants the system to look and move, as it is now.
class Appearance {
public:
    virtual ~Appearance() = default;
    virtual bool isDark() const = 0;
    /// How much larger than usual the user wants texts to be: 1 for the usual size, and where the system has no such
    /// setting.
    virtual double textScale() const { return 1; }
    /// Whether the user wants things to change at once rather than to move.
    virtual bool isMotionReduced() const { return false; }
};
