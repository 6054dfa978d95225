#pragma once

/// Lengths on the screen, in points.
struct CGPoint {
    double x = 0;
    double y = 0;
    bool operator==(const CGPoint&) const = default;
};

struct CGSize {
    double width = 0;
    double height = 0;
    bool operator==(const CGSize&) const = default;
};

struct CGRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    CGRect offsetBy(double dx, double dy) const { return { x + dx, y + dy, width, height }; }
    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    bool operator==(const CGRect&) const = default;
};
