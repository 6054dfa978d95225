#include "libvexil/VXLogMask.h"

#include "Foundation/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <span>

namespace {

using Text = std::string_view;

/// In a shape, "x" stands for a hexadecimal digit and "d" for a decimal one; all else stands for itself.
constexpr std::array<Text, 2> keyShapes { "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx", "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx" };
constexpr std::array<Text, 4> deviceShapes { "xx:xx:xx:xx:xx:xx", "xx_xx_xx_xx_xx_xx", "xx-xx-xx-xx-xx-xx",
    "xxxxxxxxxxxx" };
constexpr std::array<Text, 1> timeShapes { "dddd-dd-dd dd:dd:dd +dddd" };

struct Range {
    char32_t first;
    char32_t last;
};

/// What people write between the digits of a number: spaces, of any width; hyphens, dashes, dots, slashes and brackets;
/// and what is not seen, such as soft hyphens and the marks of the writing direction.
constexpr auto spaces = std::to_array<Range>({ { '\t', '\t' }, { ' ', ' ' }, { 0xA0, 0xA0 }, { 0x2000, 0x200A },
    { 0x202F, 0x202F }, { 0x205F, 0x205F }, { 0x3000, 0x3000 } });
constexpr auto marks = std::to_array<Range>({ { '(', ')' }, { '-', '/' }, { 0xB7, 0xB7 }, { 0x2010, 0x2015 },
    { 0x2212, 0x2212 }, { 0xFF08, 0xFF09 }, { 0xFF0D, 0xFF0F } });
constexpr auto unseen = std::to_array<Range>(
    { { 0xAD, 0xAD }, { 0x200B, 0x200F }, { 0x202A, 0x202E }, { 0x2060, 0x2069 }, { 0xFEFF, 0xFEFF } });
/// More than these between two digits, and they belong to two numbers.
constexpr std::size_t mostSpaces = 2;
constexpr std::size_t mostMarks = 3;
constexpr std::size_t fewestDigits = 7;
constexpr Text signsBeforeNumbers = "+(";
/// The zeros of the scripts that write decimal numbers with digits of their own; the other nine follow each.
constexpr auto zeros = std::to_array<char32_t>({ '0', 0x0660, 0x06F0, 0x07C0, 0x0966, 0x09E6, 0x0A66, 0x0AE6, 0x0B66,
    0x0BE6, 0x0C66, 0x0CE6, 0x0D66, 0x0DE6, 0x0E50, 0x0ED0, 0x0F20, 0x1040, 0x17E0, 0x1810, 0xFF10 });

/// Beyond ASCII all characters are letters of a mail address but these: controls and signs of Latin, punctuation of all
/// scripts and of the East, and the byte that stands for no character.
constexpr auto noLetters = std::to_array<Range>({ { 0x80, 0xBF }, { 0x2000, 0x206F }, { 0x3000, 0x303F },
    { 0xFEFF, 0xFEFF }, { 0xFF00, 0xFF0F }, { 0xFF1A, 0xFF20 }, { 0xFFFD, 0xFFFD } });
/// Containers print letters beyond ASCII as "\U00fc".
constexpr Text mailNameCharacters = "._%+-'\\";
constexpr Text mailHostCharacters = "._%+-\\";
constexpr Text mailLiteralCharacters = ".:";
constexpr std::size_t longestMailName = 254;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isLetter(char character)
{
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

bool isLetterOrDigit(char character)
{
    return isDigit(character) || isLetter(character);
}

bool isHexDigit(char character)
{
    return isDigit(character) || (character >= 'A' && character <= 'F') || (character >= 'a' && character <= 'f');
}

bool isIn(std::span<const Range> ranges, char32_t point)
{
    return std::ranges::any_of(ranges, [point](Range range) { return point >= range.first && point <= range.last; });
}

/// The digit that the character is in whatever script, as ASCII.
std::optional<char> digitOf(const Utf8Character& character)
{
    for (const char32_t zero : zeros) {
        if (character.valid && character.codePoint >= zero && character.codePoint <= zero + 9)
            return static_cast<char>('0' + (character.codePoint - zero));
    }
    return std::nullopt;
}

bool fits(char character, char shape)
{
    if (shape == 'x')
        return isHexDigit(character);
    return shape == 'd' ? isDigit(character) : character == shape;
}

bool isAllDigits(Text text)
{
    return std::ranges::all_of(text, isDigit);
}

bool beginsWith(Text shape, Text text)
{
    const bool begins = text.size() >= shape.size()
        && std::equal(
            shape.begin(), shape.end(), text.begin(), [](char part, char character) { return fits(character, part); });
    const bool ends = begins && (text.size() == shape.size() || !isLetterOrDigit(text[shape.size()]));
    // One of digits alone is rather a number.
    return ends && !isAllDigits(text.substr(0, shape.size()));
}

/// The length of the shape with which the text begins, or 0.
std::size_t lengthOfOne(std::span<const Text> shapes, Text text)
{
    const auto shape = std::ranges::find_if(shapes, [text](Text each) { return beginsWith(each, text); });
    return shape == shapes.end() ? 0 : shape->size();
}

/// How far the text goes on with ASCII letters, digits, those characters and letters beyond ASCII.
std::size_t lengthOfName(Text text, Text characters)
{
    text = text.substr(0, longestMailName);
    std::size_t length = 0;
    while (length < text.size()) {
        const Utf8Character next = firstCharacter(text.substr(length));
        const bool isAscii = next.codePoint < 0x80;
        const bool belongs = isAscii ? isLetterOrDigit(text[length]) || characters.find(text[length]) != Text::npos
                                     : next.valid && !isIn(noLetters, next.codePoint);
        if (!belongs)
            break;
        length += next.length;
    }
    return length;
}

/// A host is a name or, in brackets, an address of its own.
std::size_t lengthOfMailHost(Text text)
{
    if (!text.starts_with('['))
        return lengthOfName(text, mailHostCharacters);
    const std::size_t inside = lengthOfName(text.substr(1), mailLiteralCharacters);
    return inside > 0 && text.substr(1 + inside).starts_with(']') ? inside + 2 : 0;
}

std::size_t lengthOfMailAddress(Text text)
{
    // Most words are none, which is found out at once.
    const std::size_t sign = text.substr(0, longestMailName + 1).find('@');
    if (sign == 0 || sign == Text::npos || text.starts_with('\'') || lengthOfName(text, mailNameCharacters) != sign)
        return 0;
    const std::size_t host = lengthOfMailHost(text.substr(sign + 1));
    return host == 0 ? 0 : sign + 1 + host;
}

/// What is told by its shape.
struct Kind {
    /// Null for one that stays.
    const char* name;
    std::span<const Text> shapes;
};

constexpr std::array<Kind, 3> kinds { { { nullptr, timeShapes }, { "SIM", keyShapes }, { "address", deviceShapes } } };

struct Found {
    const char* name = nullptr;
    /// 0 where the text begins with none of them.
    std::size_t length = 0;
};

Found shapeAtStart(Text text)
{
    for (const Kind& kind : kinds) {
        if (const std::size_t length = lengthOfOne(kind.shapes, text))
            return { kind.name, length };
    }
    return {};
}

/// What stands between two digits of a number.
class Gap {
public:
    /// False when it is more than people write there.
    bool takes(char32_t point)
    {
        if (isIn(spaces, point))
            return ++_spaces <= mostSpaces;
        if (isIn(marks, point))
            return ++_marks <= mostMarks;
        return isIn(unseen, point);
    }
    bool isEmpty() const { return _spaces + _marks == 0; }

private:
    std::size_t _spaces = 0;
    std::size_t _marks = 0;
};

/// Up to its last digit; 0 where it has too few of them.
std::size_t lengthOfNumber(Text text)
{
    std::size_t digits = 0;
    std::size_t end = 0;
    Gap gap;
    for (std::size_t i = !text.empty() && signsBeforeNumbers.find(text[0]) != Text::npos ? 1 : 0; i < text.size();) {
        const Utf8Character next = firstCharacter(text.substr(i));
        if (digitOf(next)) {
            // Of a key that follows a number, nothing is to be left.
            if (digits > 0 && !gap.isEmpty() && shapeAtStart(text.substr(i)).length > 0)
                break;
            ++digits;
            gap = {};
            end = i + next.length;
        } else if ((digits == 0 && text[i] != '(') || !gap.takes(next.codePoint)) {
            break;
        }
        i += next.length;
    }
    return digits < fewestDigits ? 0 : end;
}

/// Two ways of writing a number or a key are the same one.
std::string plain(Text text)
{
    std::string letters;
    while (!text.empty()) {
        const Utf8Character next = firstCharacter(text);
        const char first = text[0];
        if (const auto digit = digitOf(next))
            letters += *digit;
        else if (isLetter(first))
            letters += first >= 'a' ? static_cast<char>(first - 'a' + 'A') : first;
        else if (first == '@' || (next.codePoint >= 0x80 && !isIn(noLetters, next.codePoint)))
            letters += text.substr(0, next.length);
        text.remove_prefix(next.length);
    }
    return letters;
}

/// Goes through the log once, from its beginning to its end.
class Masker {
public:
    explicit Masker(Text log)
        : _rest(log)
    {
    }

    std::string mask()
    {
        while (!_rest.empty())
            step();
        return std::move(_masked);
    }

private:
    void step()
    {
        const bool isStart = !isLetterOrDigit(_last);
        if (const Found found = isStart ? shapeAtStart(_rest) : Found(); found.length > 0)
            found.name ? replace(found.name, found.length) : keep(found.length);
        else if (const std::size_t address = isStart ? lengthOfMailAddress(_rest) : 0)
            replace("address", address);
        else if (const std::size_t number = lengthOfNumber(_rest))
            replace("number", number);
        else
            keep(firstCharacter(_rest).length);
    }

    void keep(std::size_t length)
    {
        _masked += _rest.substr(0, length);
        _last = _rest[length - 1];
        _rest.remove_prefix(length);
    }

    void replace(const std::string& kind, std::size_t length)
    {
        auto& known = _known[kind];
        const auto [place, isNew] = known.try_emplace(plain(_rest.substr(0, length)), known.size() + 1);
        _masked += "[" + kind + " " + std::to_string(place->second) + "]";
        _last = _masked.back();
        _rest.remove_prefix(length);
    }

    Text _rest;
    /// The last character of what is masked so far.
    char _last = '\n';
    std::string _masked;
    /// The numbers given so far, by kind and by what they stand for.
    std::map<std::string, std::map<std::string, std::size_t>> _known;
};

} // namespace

std::string maskedLog(std::string_view log)
{
    return Masker(log).mask();
}
