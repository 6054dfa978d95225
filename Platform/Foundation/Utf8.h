#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// A character of a UTF-8 text, and how many bytes it takes.
struct Utf8Character {
    char32_t codePoint;
    std::size_t length;
    bool valid;
};

/// The character at the front of a text that is not empty; a byte that belongs to none is one byte long and not valid.
Utf8Character firstCharacter(std::string_view text);

/// Whether every byte belongs to a character.
bool isUtf8(std::string_view text);

/// Appends the character, which is no surrogate and at most U+10FFFF.
void appendUtf8(std::string& text, char32_t codePoint);
