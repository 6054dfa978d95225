#pragma once

#include <cstddef>

/// What a property list may hold at most, read or written: every list that is written can be read again.
struct PropertyListLimits {
    /// libplist parses, frees and writes containers by recursion.
    static constexpr std::size_t depth = 512;
    /// Keys count as values, and a value that is referred to twice counts twice. The time that libplist needs to write
    /// grows with the square of the number: 0.1 s for this many, 4 s for five times as many.
    static constexpr std::size_t values = 100'000;
    /// Of a file, and of the texts and data it unfolds to. libplist counts the characters of a text in an int.
    static constexpr std::size_t bytes = std::size_t { 256 } << 20;
};
