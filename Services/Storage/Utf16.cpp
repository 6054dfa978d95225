#include "Storage/Utf16.h"

#include "Foundation/Utf8.h"
#include "Storage/PropertyListRules.h"

namespace {

constexpr char32_t firstHigh = 0xD800;
constexpr char32_t firstLow = 0xDC00;
constexpr char32_t lastLow = 0xDFFF;
constexpr char32_t firstSupplementary = 0x10000;
constexpr int bitsOfHalf = 10;

void appendUnit(std::string& text, char32_t unit)
{
    text += static_cast<char>(unit >> 8);
    text += static_cast<char>(unit);
}

} // namespace

void Utf16Decoder::append(std::string& text, char32_t unit)
{
    const bool isLow = unit >= firstLow && unit <= lastLow;
    const bool isHigh = unit >= firstHigh && unit < firstLow;
    require(isLow != isComplete());
    if (isLow)
        appendUtf8(text, firstSupplementary + ((_high - firstHigh) << bitsOfHalf) + (unit - firstLow));
    else if (!isHigh)
        appendUtf8(text, unit);
    _high = isHigh ? unit : 0;
}

std::string utf8FromUtf16(std::string_view bytes, std::endian order)
{
    require(bytes.size() % 2 == 0);
    const std::size_t high = order == std::endian::big ? 0 : 1;
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    std::string text;
    text.reserve(bytes.size() / 2);
    Utf16Decoder decoder;
    for (std::size_t i = 0; i < bytes.size(); i += 2)
        decoder.append(text, static_cast<char32_t>(byte(i + high) << 8 | byte(i + 1 - high)));
    require(decoder.isComplete());
    return text;
}

std::string bigEndianUtf16(std::string_view text)
{
    std::string units;
    units.reserve(2 * text.size());
    while (!text.empty()) {
        const Utf8Character character = firstCharacter(text);
        text.remove_prefix(character.length);
        if (character.codePoint < firstSupplementary) {
            appendUnit(units, character.codePoint);
            continue;
        }
        const char32_t halves = character.codePoint - firstSupplementary;
        appendUnit(units, firstHigh + (halves >> bitsOfHalf));
        appendUnit(units, firstLow + (halves & ((1 << bitsOfHalf) - 1)));
    }
    return units;
}
