#include "Foundation/Utf8.h"

#include <array>

Utf8Character firstCharacter(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80)
        return { lead, 1, true };
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return { lead, 1, false };
    char32_t point = lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return { lead, 1, false };
        point = point << 6 | (byte(i) & 0x3F);
    }
    constexpr std::array<char32_t, 5> least { 0, 0, 0x80, 0x800, 0x10000 };
    const bool valid = point >= least.at(length) && point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
    return valid ? Utf8Character { point, length, true } : Utf8Character { lead, 1, false };
}

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        const Utf8Character character = firstCharacter(text);
        if (!character.valid)
            return false;
        text.remove_prefix(character.length);
    }
    return true;
}

void appendUtf8(std::string& text, char32_t codePoint)
{
    const auto append = [&](char32_t lead, int shift) {
        text += static_cast<char>(lead | codePoint >> shift);
        for (shift -= 6; shift >= 0; shift -= 6)
            text += static_cast<char>(0x80 | (codePoint >> shift & 0x3F));
    };
    if (codePoint < 0x80)
        append(0, 0);
    else if (codePoint < 0x800)
        append(0xC0, 6);
    else if (codePoint < 0x10000)
        append(0xE0, 12);
    else
        append(0xF0, 18);
}
