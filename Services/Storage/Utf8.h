#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Whether the text is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isUtf8(std::string_view text);

/// Whether it is a character that UTF-8 and UTF-16 can hold: no surrogate, nothing above U+10FFFF.
bool isCharacter(std::uint32_t character);

void appendUtf8(std::string& text, std::uint32_t character);

/// The UTF-16 form, big-endian. The text is well-formed UTF-8.
std::string bigEndianUtf16(std::string_view text);
