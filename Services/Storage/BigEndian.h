#pragma once

#include "Runtime/Value.h"

#include <cstddef>
#include <cstdint>

/// The unsigned integer of `width` bytes, at most 8, that begins at `bytes`.
inline std::uint64_t readBigEndian(const std::uint8_t* bytes, std::size_t width)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i)
        value = value << 8 | bytes[i];
    return value;
}

/// Appends the low `width` bytes of the value, at most 8.
inline void appendBigEndian(Bytes& bytes, std::uint64_t value, std::size_t width)
{
    for (std::size_t i = width; i-- > 0;)
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}
