#pragma once

#include "Runtime/Boxing.h"

#include <compare>
#include <cstddef>

/// A row of a table: its section, and its place in the section.
struct NSIndexPath {
    std::size_t section = 0;
    std::size_t row = 0;

    /// From an array of the two numbers, which is how a path enters a selector; what is missing is 0.
    static NSIndexPath fromValue(const Value& value)
    {
        return { boxing::unboxed<std::size_t>(boxing::numberAt(value, 0)),
            boxing::unboxed<std::size_t>(boxing::numberAt(value, 1)) };
    }
    auto operator<=>(const NSIndexPath&) const = default;
};
