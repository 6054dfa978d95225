#pragma once

#include "Runtime/Value.h"

/// A colour with single-precision components from 0 to 1, not premultiplied.
struct UIColor {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 0;

    static constexpr UIColor whiteColor() { return { 1, 1, 1, 1 }; }
    static constexpr UIColor blackColor() { return { 0, 0, 0, 1 }; }
    static constexpr UIColor clearColor() { return { 0, 0, 0, 0 }; }
    static constexpr UIColor lightGrayColor() { return { 2.0F / 3, 2.0F / 3, 2.0F / 3, 1 }; }
    static constexpr UIColor darkGrayColor() { return { 1.0F / 3, 1.0F / 3, 1.0F / 3, 1 }; }

    constexpr UIColor colorWithAlphaComponent(float component) const { return { red, green, blue, component }; }

    /// The four components as reals, which is how a colour leaves a selector.
    operator Value() const
    {
        return Value::Array { double { red }, double { green }, double { blue }, double { alpha } };
    }
    bool operator==(const UIColor&) const = default;
};
