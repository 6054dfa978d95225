#include "libvexil/VXLogMask.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>

namespace {

using Text = std::string_view;

/// In a shape, "x" stands for a hexadecimal digit and "d" for a decimal one; all else stands for itself.
constexpr Text keyShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
constexpr std::array<Text, 3> deviceShapes { "xx:xx:xx:xx:xx:xx", "xx_xx_xx_xx_xx_xx", "xx-xx-xx-xx-xx-xx" };
constexpr Text timeShape = "dddd-dd-dd dd:dd:dd +dddd";
/// What people write between the digits of a number; the last three are spaces and a hyphen that do not break.
constexpr std::array<Text, 9> separators { " ", "-", ".", "/", "(", ")", "\u00a0", "\u202f", "\u2011" };
constexpr Text mailCharacters = "._%+-";
constexpr std::size_t longestMailName = 254;
constexpr std::size_t fewestDigits = 7;
constexpr std::size_t mostSeparators = 2;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isLetterOrDigit(char character)
{
    return isDigit(character) || (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

bool isHexDigit(char character)
{
    return isDigit(character) || (character >= 'A' && character <= 'F') || (character >= 'a' && character <= 'f');
}

bool fits(char character, char shape)
{
    if (shape == 'x')
        return isHexDigit(character);
    return shape == 'd' ? isDigit(character) : character == shape;
}

/// The length of the shape where the text begins with it, or 0.
std::size_t lengthOf(Text shape, Text text)
{
    const bool begins = text.size() >= shape.size()
        && std::equal(
            shape.begin(), shape.end(), text.begin(), [](char part, char character) { return fits(character, part); });
    const bool ends = begins && (text.size() == shape.size() || !isLetterOrDigit(text[shape.size()]));
    return ends ? shape.size() : 0;
}

std::size_t lengthOfDevice(Text text)
{
    std::size_t length = 0;
    for (const Text shape : deviceShapes)
        length = std::max(length, lengthOf(shape, text));
    return length;
}

std::size_t lengthOfMailName(Text text)
{
    std::size_t length = 0;
    while (length < std::min(text.size(), longestMailName)
        && (isLetterOrDigit(text[length]) || mailCharacters.find(text[length]) != Text::npos))
        ++length;
    return length;
}

std::size_t lengthOfMailAddress(Text text)
{
    const std::size_t name = lengthOfMailName(text);
    if (name == 0 || name == text.size() || text[name] != '@')
        return 0;
    const std::size_t host = lengthOfMailName(text.substr(name + 1));
    return host == 0 ? 0 : name + 1 + host;
}

std::size_t lengthOfSeparator(Text text)
{
    for (const Text separator : separators) {
        if (text.starts_with(separator))
            return separator.size();
    }
    return 0;
}

/// Up to its last digit; 0 where it has too few of them.
std::size_t lengthOfNumber(Text text)
{
    std::size_t digits = 0;
    std::size_t end = 0;
    std::size_t gap = 0;
    for (std::size_t i = text.starts_with('+') || text.starts_with('(') ? 1 : 0; i < text.size();) {
        if (isDigit(text[i])) {
            ++digits;
            gap = 0;
            end = ++i;
            continue;
        }
        const std::size_t separator = digits == 0 && text[i] != '(' ? 0 : lengthOfSeparator(text.substr(i));
        if (separator == 0 || ++gap > mostSeparators)
            break;
        i += separator;
    }
    return digits < fewestDigits ? 0 : end;
}

/// Two ways of writing a number or a key are the same one.
std::string plain(Text text)
{
    std::string letters;
    for (const char character : text) {
        if (isLetterOrDigit(character) || character == '@')
            letters += character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
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
        if (const std::size_t time = isStart ? lengthOf(timeShape, _rest) : 0)
            keep(time);
        else if (const std::size_t key = isStart ? lengthOf(keyShape, _rest) : 0)
            replace("SIM", key);
        else if (const std::size_t device = isStart ? lengthOfDevice(_rest) : 0)
            replace("address", device);
        else if (const std::size_t address = isStart ? lengthOfMailAddress(_rest) : 0)
            replace("address", address);
        else if (const std::size_t number = isDigit(_last) ? 0 : lengthOfNumber(_rest))
            replace("number", number);
        else
            keep(1);
    }

    void keep(std::size_t length)
    {
        _masked += _rest.substr(0, length);
        advance(length);
    }

    void replace(const std::string& kind, std::size_t length)
    {
        auto& known = _known[kind];
        const auto [place, isNew] = known.try_emplace(plain(_rest.substr(0, length)), known.size() + 1);
        _masked += "[" + kind + " " + std::to_string(place->second) + "]";
        advance(length);
    }

    void advance(std::size_t length)
    {
        _last = _rest[length - 1];
        _rest.remove_prefix(length);
    }

    Text _rest;
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
