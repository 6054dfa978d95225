#pragma once

#include <cstddef>
#include <string>

/// What a property list has at most, read or written: every list that is written can be read again.
struct PropertyListLimits {
    /// Of the file.
    static constexpr std::size_t bytes = std::size_t { 16 } << 20;
    /// Of containers in one another, which are read and written by recursion.
    static constexpr std::size_t depth = 512;
};

/// Thrown by the readers of the formats.
struct MalformedList { };

/// Thrown by the writer: what no list can contain, in plural.
struct UnwritableValue {
    std::string content;
};

/// Throws when something that holds in every list does not.
inline void require(bool holds)
{
    if (!holds)
        throw MalformedList();
}
