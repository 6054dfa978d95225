#include "Storage/Utf8.h"

namespace {

constexpr std::uint32_t firstSurrogate = 0xD800;
constexpr std::uint32_t firstLowSurrogate = 0xDC00;
constexpr std::uint32_t lastSurrogate = 0xDFFF;
constexpr std::uint32_t firstSupplementary = 0x10000;
constexpr std::uint32_t lastCharacter = 0x10FFFF;

struct Sequence {
    std::size_t length;
    std::uint32_t leadBits;
    std::uint32_t least;
};

/// What the first byte of a sequence announces; a length of 0 when no sequence begins with it.
Sequence sequenceOf(std::uint8_t lead)
{
    if (lead < 0x80)
        return { 1, lead, 0 };
    if (lead < 0xC0)
        return { 0, 0, 0 };
    if (lead < 0xE0)
        return { 2, lead & 0x1Fu, 0x80 };
    if (lead < 0xF0)
        return { 3, lead & 0x0Fu, 0x800 };
    if (lead < 0xF8)
        return { 4, lead & 0x07u, firstSupplementary };
    return { 0, 0, 0 };
}

/// The character at `at`, which moves behind it; lastCharacter + 1 when none is there.
std::uint32_t nextCharacter(std::string_view text, std::size_t& at)
{
    constexpr std::uint32_t none = lastCharacter + 1;
    const Sequence sequence = sequenceOf(static_cast<std::uint8_t>(text[at]));
    if (sequence.length == 0 || sequence.length > text.size() - at)
        return none;
    std::uint32_t character = sequence.leadBits;
    for (std::size_t i = 1; i < sequence.length; ++i) {
        const auto byte = static_cast<std::uint8_t>(text[at + i]);
        if ((byte & 0xC0) != 0x80)
            return none;
        character = character << 6 | (byte & 0x3Fu);
    }
    at += sequence.length;
    return character < sequence.least ? none : character;
}

void appendUnit(std::string& text, std::uint32_t unit)
{
    text += static_cast<char>(unit >> 8);
    text += static_cast<char>(unit & 0xFF);
}

} // namespace

bool isCharacter(std::uint32_t character)
{
    return character <= lastCharacter && (character < firstSurrogate || character > lastSurrogate);
}

bool isUtf8(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        if (!isCharacter(nextCharacter(text, at)))
            return false;
    }
    return true;
}

void appendUtf8(std::string& text, std::uint32_t character)
{
    const auto continuation = [&](int shift) { text += static_cast<char>(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | character >> 6);
        continuation(0);
    } else if (character < firstSupplementary) {
        text += static_cast<char>(0xE0 | character >> 12);
        continuation(6);
        continuation(0);
    } else {
        text += static_cast<char>(0xF0 | character >> 18);
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

std::string bigEndianUtf16(std::string_view text)
{
    std::string units;
    units.reserve(2 * text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::uint32_t character = nextCharacter(text, at);
        if (character < firstSupplementary) {
            appendUnit(units, character);
        } else {
            appendUnit(units, firstSurrogate + ((character - firstSupplementary) >> 10));
            appendUnit(units, firstLowSurrogate + ((character - firstSupplementary) & 0x3FF));
        }
    }
    return units;
}
