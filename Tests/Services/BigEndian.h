#pragma once

#include "Runtime/Value.h"

/// Appends the low `width` bytes of the value, at most 8.
inline void appendBigEndian(Bytes& bytes, std::uint64_t value, std::size_t width)
{
    for (std::size_t i = width; i-- > 0;)
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}
