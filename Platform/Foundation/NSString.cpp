#include "Foundation/NSString.h"

#include "Foundation/Utf8.h"
#include "Runtime/NSObject.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <limits>
#include <optional>

namespace {

constexpr std::string_view nullText = "(null)";
constexpr std::size_t indentWidth = 4;
/// A container that stands in many places of a value is printed in each. A description that gets longer is cut there.
constexpr std::size_t longestDescription = std::size_t { 4 } << 20;
constexpr std::string_view cutMark = "...";
constexpr std::size_t wholeDataLength = 24;
constexpr std::size_t dataHeadLength = 16;
constexpr std::size_t dataTailLength = 8;
constexpr double referenceDateSince1970 = 978307200;
constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

template <class... Arguments>
std::string printed(const char* format, Arguments... arguments)
{
    std::array<char, 64> buffer;
    std::snprintf(buffer.data(), buffer.size(), format, arguments...);
    return buffer.data();
}

/// As printf does it with 16 digits, but with a decimal point whatever the user's locale.
std::string printedReal(double number)
{
    std::array<char, 64> buffer;
    char* const begin = buffer.data();
    return { begin, std::to_chars(begin, begin + buffer.size(), number, std::chars_format::general, 16).ptr };
}

std::string printedInteger(const Value& value)
{
    return value.kind() == Value::Kind::Unsigned ? std::to_string(value.unsignedInteger())
                                                 : std::to_string(value.integerValue());
}

std::string hexOf(Bytes::const_iterator begin, Bytes::const_iterator end)
{
    std::string text;
    for (auto byte = begin; byte != end; ++byte)
        text += printed("%02x", static_cast<unsigned>(*byte));
    return text;
}

std::string printedData(const Bytes& data)
{
    std::string text = "{length = " + std::to_string(data.size()) + ", bytes = 0x";
    if (data.size() <= wholeDataLength)
        return text + hexOf(data.begin(), data.end()) + "}";
    for (std::size_t i = 0; i < dataHeadLength; i += 4)
        text += hexOf(data.begin() + static_cast<std::ptrdiff_t>(i), data.begin() + static_cast<std::ptrdiff_t>(i + 4))
            + " ";
    const auto tail = data.end() - dataTailLength;
    return text + "... " + hexOf(tail, tail + 4) + " " + hexOf(tail + 4, data.end()) + "}";
}

std::string printedDate(Date date)
{
    const double since1970 = std::floor(date.secondsSinceReferenceDate + referenceDateSince1970);
    std::tm parts {};
    // Beyond these the year does not fit the calendar's integer.
    constexpr double furthest = 6e16;
    if (!(std::abs(since1970) < furthest))
        return printedReal(date.secondsSinceReferenceDate);
    const auto seconds = static_cast<std::time_t>(since1970);
    gmtime_r(&seconds, &parts);
    return printed("%04d-%02d-%02d %02d:%02d:%02d +0000", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
        parts.tm_hour, parts.tm_min, parts.tm_sec);
}

/// The character as it stands between quotes: on one line, and ASCII.
std::string escaped(unsigned character)
{
    constexpr std::string_view named = "\a\b\t\n\v\f\r\"\\";
    constexpr std::string_view names = "abtnvfr\"\\";
    if (character >= 0x10000)
        return printed("\\U%04x\\U%04x", 0xD7C0 + (character >> 10), 0xDC00 | (character & 0x3FF));
    if (character >= 0x80)
        return printed("\\U%04x", character);
    if (const std::size_t name = named.find(static_cast<char>(character)); name != std::string_view::npos)
        return { '\\', names[name] };
    if (character < ' ' || character == 0x7F)
        return printed("\\%03o", character);
    return { static_cast<char>(character) };
}

/// A text inside a container: bare when it is all ASCII letters and digits, else quoted and escaped.
std::string quoted(std::string_view text)
{
    const auto isBare = [](unsigned char c) {
        return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
    };
    bool bare = !text.empty();
    for (const char c : text)
        bare = bare && isBare(static_cast<unsigned char>(c));
    if (bare)
        return std::string(text);
    std::string out = "\"";
    while (!text.empty()) {
        const Utf8Character c = firstCharacter(text);
        out += escaped(static_cast<unsigned>(c.codePoint));
        text.remove_prefix(c.length);
    }
    return out + "\"";
}

std::string printedLeaf(const Value& value)
{
    switch (value.kind()) {
    case Value::Kind::Null:
        return std::string(nullText);
    case Value::Kind::Boolean:
        return value.boolean() ? "1" : "0";
    case Value::Kind::Integer:
    case Value::Kind::Unsigned:
        return printedInteger(value);
    case Value::Kind::Real:
        return printedReal(value.real());
    case Value::Kind::String:
        return *value.string();
    case Value::Kind::Data:
        return printedData(*value.data());
    case Value::Kind::Date:
        return printedDate(value.date());
    case Value::Kind::Uid:
        return "{value = " + std::to_string(value.uid().index) + "}";
    case Value::Kind::Object:
        return value.object()->description();
    default:
        return value.classObject()->name();
    }
}

void printInside(std::string& out, const Value& value, std::size_t level);

/// Whether the description has become too long for another entry; the mark of the cut stands in its place then.
bool isCut(std::string& out, const std::string& indent)
{
    if (out.size() <= longestDescription)
        return false;
    out += indent;
    out += cutMark;
    return true;
}

void printContainer(std::string& out, const Value& value, std::size_t level)
{
    const std::string outer(level * indentWidth, ' ');
    const std::string inner((level + 1) * indentWidth, ' ');
    if (const auto* entries = value.dictionary()) {
        out += outer + "{\n";
        for (const auto& [key, entry] : *entries) {
            if (isCut(out, inner))
                break;
            out += inner + quoted(key) + " = ";
            printInside(out, entry, level + 1);
            out += ";\n";
        }
        out += outer + "}";
        return;
    }
    out += outer + "(";
    const char* separator = "\n";
    for (const Value& element : *value.array()) {
        out += separator;
        if (isCut(out, inner))
            break;
        out += inner;
        printInside(out, element, level + 1);
        separator = ",\n";
    }
    out += "\n" + outer + ")";
}

void printInside(std::string& out, const Value& value, std::size_t level)
{
    if (value.array() || value.dictionary())
        printContainer(out, value, level);
    else if (value.kind() == Value::Kind::Object)
        // An object prints its own lines; everything else is one word or a quoted text.
        out += printedLeaf(value);
    else
        out += quoted(printedLeaf(value));
}

/// A place in a format that an argument fills.
struct Placeholder {
    std::size_t length;
    /// Which argument, counted from 1; nothing for the next in order.
    std::optional<std::size_t> position;
    bool isInteger;
};

/// Takes a position, as "2$", off the text; nothing where the text begins with none. One beyond all numbers is the
/// largest.
std::optional<std::size_t> takePosition(std::string_view& text)
{
    const std::size_t end = text.find_first_not_of("0123456789");
    if (end == 0 || end == std::string_view::npos || text[end] != '$')
        return std::nullopt;
    std::size_t position = std::numeric_limits<std::size_t>::max();
    std::from_chars(text.data(), text.data() + end, position);
    if (position == 0)
        return std::nullopt;
    text.remove_prefix(end + 1);
    return position;
}

/// The placeholder that the format begins with.
std::optional<Placeholder> placeholderAt(std::string_view format)
{
    if (!format.starts_with('%'))
        return std::nullopt;
    std::string_view rest = format.substr(1);
    const auto position = takePosition(rest);
    for (const std::string_view conversion : { "@", "ld", "lu", "d" }) {
        if (rest.starts_with(conversion))
            return Placeholder { format.size() - rest.size() + conversion.size(), position, conversion != "@" };
    }
    return std::nullopt;
}

std::string printedArgument(const Value& argument, bool isInteger)
{
    return isInteger ? printedInteger(argument) : descriptionOf(argument);
}

} // namespace

std::string descriptionOf(const Value& value)
{
    if (!value.array() && !value.dictionary())
        return printedLeaf(value);
    std::string text;
    printContainer(text, value, 0);
    return text;
}

std::string stringWithFormat(std::string_view format, std::initializer_list<Value> arguments)
{
    std::string out;
    std::size_t next = 0;
    while (!format.empty()) {
        if (format.starts_with("%%")) {
            out += '%';
            format.remove_prefix(2);
            continue;
        }
        const auto placeholder = placeholderAt(format);
        if (!placeholder) {
            out += format.front();
            format.remove_prefix(1);
            continue;
        }
        const std::size_t index = placeholder->position ? *placeholder->position - 1 : next++;
        out += index < arguments.size() ? printedArgument(arguments.begin()[index], placeholder->isInteger)
                                        : std::string(nullText);
        format.remove_prefix(placeholder->length);
    }
    return out;
}

std::string stringByAppendingPathComponent(std::string_view path, std::string_view component)
{
    std::string joined;
    joined.reserve(path.size() + component.size() + 1);
    const auto append = [&joined](std::string_view text) {
        for (const char c : text) {
            if (c != '/' || joined.empty() || joined.back() != '/')
                joined += c;
        }
    };
    append(path);
    if (!joined.empty() && !component.empty())
        append("/");
    append(component);
    if (joined.size() > 1 && joined.back() == '/')
        joined.pop_back();
    return joined;
}

std::string stringByAddingPercentEscapes(std::string_view text)
{
    std::string escaped;
    for (const char c : text) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')
            || std::string_view("-._~").find(c) != std::string_view::npos;
        if (plain)
            escaped += c;
        else
            escaped += printed("%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    }
    return escaped;
}

std::vector<std::string> componentsSeparatedByString(std::string_view text, char separator)
{
    std::vector<std::string> pieces;
    for (;;) {
        const std::size_t end = text.find(separator);
        pieces.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return pieces;
        text.remove_prefix(end + 1);
    }
}

std::size_t utf16Length(std::string_view text)
{
    std::size_t units = 0;
    while (!text.empty()) {
        const Utf8Character c = firstCharacter(text);
        units += c.codePoint >= 0x10000 ? 2 : 1;
        text.remove_prefix(c.length);
    }
    return units;
}

std::string stringFromUtf8(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Utf8Character c = firstCharacter(bytes);
        text += c.valid ? bytes.substr(0, c.length) : replacementCharacter;
        bytes.remove_prefix(c.length);
    }
    return text;
}
