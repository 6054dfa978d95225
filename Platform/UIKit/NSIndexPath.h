#pragma once

#include <compare>
#include <cstddef>

/// A row of a table: its section, and its place in the section.
struct NSIndexPath {
    std::size_t section = 0;
    std::size_t row = 0;
    auto operator<=>(const NSIndexPath&) const = default;
};
