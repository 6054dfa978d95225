#pragma once

#include "Runtime/Value.h"

#include <bit>

/// Makes UTF-8 of UTF-16 units, one by one.
class Utf16Decoder {
public:
    /// Appends the character that the unit completes. Throws MalformedList when the unit cannot follow the one before.
    void append(std::string& text, char32_t unit);
    /// Whether no second half of a surrogate pair is missing.
    bool isComplete() const { return _high == 0; }

private:
    char32_t _high = 0;
};

/// Throws MalformedList when the bytes are not whole characters of UTF-16.
std::string utf8FromUtf16(std::string_view bytes, std::endian order);

/// The big-endian UTF-16 of a text that is well-formed UTF-8.
std::string bigEndianUtf16(std::string_view text);
