#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// A binary property list: the header, the objects, the table of their offsets, and a trailer that tells the widths of
/// offsets and references, the number of objects, the root, and where the table begins. Numbers have their highest byte
/// first.
namespace BinaryListFormat {

constexpr std::string_view header = "bplist00";
constexpr std::size_t trailerSize = 32;
constexpr std::size_t unusedTrailerSize = 6;

/// An object begins with a marker. Its upper half is the type; the lower one is a count or tells the width.
enum class Type : std::uint8_t {
    Boolean = 0x0,
    Integer = 0x1,
    Real = 0x2,
    Date = 0x3,
    Data = 0x4,
    Ascii = 0x5,
    Utf16 = 0x6,
    Uid = 0x8,
    Array = 0xA,
    Dictionary = 0xD
};

constexpr unsigned falseInfo = 8;
constexpr unsigned trueInfo = 9;
/// In place of this and higher counts; the count follows as an integer.
constexpr unsigned longCount = 0xF;

} // namespace BinaryListFormat
