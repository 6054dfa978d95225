#pragma once

#include "Runtime/Value.h"

#include <cstddef>
#include <cstdint>

/// Reads the bytes with the reader of a format. What is read must be written, unless it is too long for a file, and
/// must read back as it was. Anything else ends the process.
void checkRoundTrip(Value (*read)(std::string_view bytes), const std::uint8_t* bytes, std::size_t size);
