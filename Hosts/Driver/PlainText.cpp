#include "Driver/PlainText.h"

#include "Foundation/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// Controls, and the marks that break lines or change the writing direction.
constexpr auto controls = std::to_array<Range>({ { 0, 0x1F }, { 0x7F, 0x9F }, { 0x2028, 0x202E }, { 0x2066, 0x2069 } });

bool isHarmless(const Utf8Character& character, LineBreaks lineBreaks)
{
    if (character.codePoint == '\n')
        return lineBreaks == LineBreaks::Kept;
    return character.valid && std::ranges::none_of(controls, [&character](Range range) {
        return character.codePoint >= range.first && character.codePoint <= range.last;
    });
}

std::string written(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 5> escape {};
        std::snprintf(escape.data(), escape.size(), "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += escape.data();
    }
    return text;
}

} // namespace

std::string plainText(std::string_view text, LineBreaks lineBreaks)
{
    std::string plain;
    while (!text.empty()) {
        const Utf8Character next = firstCharacter(text);
        const std::string_view bytes = text.substr(0, next.length);
        plain += isHarmless(next, lineBreaks) ? std::string(bytes) : written(bytes);
        text.remove_prefix(next.length);
    }
    return plain;
}
