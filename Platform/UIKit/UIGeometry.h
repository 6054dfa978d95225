#pragma once

#include "Runtime/Value.h"

/// Lengths on the screen, in points.
struct CGPoint {
    double x = 0;
    double y = 0;
    bool operator==(const CGPoint&) const = default;
};

struct CGSize {
    double width = 0;
    double height = 0;

    /// From an array of the two numbers, which is how a size enters a selector; what is missing is 0.
    static CGSize fromValue(const Value& value);
    bool operator==(const CGSize&) const = default;
};

struct CGRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    CGRect offsetBy(double dx, double dy) const { return { x + dx, y + dy, width, height }; }
    /// The four numbers as an array, which is how a rectangle enters and leaves a selector; what is missing is 0.
    static CGRect fromValue(const Value& value);
    explicit operator Value() const { return Value::Array { x, y, width, height }; }

    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    bool operator==(const CGRect&) const = default;
};
