#include "Storage/StringTableReader.h"

#include "Foundation/Utf8.h"
#include "Storage/PropertyListRules.h"
#include "Storage/Utf16.h"

#include <charconv>

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view bigEndianMark = "\xFE\xFF";
constexpr std::string_view littleEndianMark = "\xFF\xFE";
constexpr std::string_view spaces = " \t\n\r\f\v";
constexpr std::string_view wordCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_$/:.-";
constexpr std::string_view octalDigits = "01234567";
constexpr std::string_view escapeNames = "abfnrtv";
constexpr std::string_view escapedCharacters = "\a\b\f\n\r\t\v";
constexpr std::size_t mostHexadecimalDigits = 4;
constexpr std::size_t mostOctalDigits = 3;

class StringTable {
public:
    explicit StringTable(std::string_view text)
        : _rest(text)
    {
    }

    Dictionary entries();

private:
    void skipSpaces();
    bool take(std::string_view mark);
    std::string_view takeTo(std::size_t place);
    std::string takeText();
    std::string takeQuoted(char quote);
    char32_t takeEscaped();
    char32_t takeNumber(int base, std::size_t mostDigits);

    std::string_view _rest;
};

Dictionary StringTable::entries()
{
    Dictionary entries;
    for (skipSpaces(); !_rest.empty(); skipSpaces()) {
        std::string key = takeText();
        skipSpaces();
        require(take("="));
        skipSpaces();
        entries.insert_or_assign(std::move(key), takeText());
        skipSpaces();
        require(take(";"));
    }
    return entries;
}

/// Comments too.
void StringTable::skipSpaces()
{
    for (;;) {
        takeTo(_rest.find_first_not_of(spaces));
        if (_rest.starts_with("//")) {
            takeTo(_rest.find('\n'));
        } else if (take("/*")) {
            takeTo(_rest.find("*/"));
            require(take("*/"));
        } else {
            return;
        }
    }
}

bool StringTable::take(std::string_view mark)
{
    const bool isThere = _rest.starts_with(mark);
    takeTo(isThere ? mark.size() : 0);
    return isThere;
}

/// Everything, when there is no such place.
std::string_view StringTable::takeTo(std::size_t place)
{
    const std::string_view taken = _rest.substr(0, place);
    _rest.remove_prefix(taken.size());
    return taken;
}

std::string StringTable::takeText()
{
    for (const char quote : { '"', '\'' }) {
        if (take({ &quote, 1 }))
            return takeQuoted(quote);
    }
    const std::string_view word = takeTo(_rest.find_first_not_of(wordCharacters));
    require(!word.empty());
    return std::string(word);
}

/// What stands before the closing quote, which is taken too.
std::string StringTable::takeQuoted(char quote)
{
    const char ends[] { quote, '\\' };
    std::string text;
    for (Utf16Decoder escapes;;) {
        const std::string_view plain = takeTo(_rest.find_first_of({ ends, sizeof ends }));
        const bool isEscape = take("\\");
        // The halves of a surrogate pair stand side by side.
        require(escapes.isComplete() || (plain.empty() && isEscape));
        text += plain;
        if (isEscape) {
            escapes.append(text, takeEscaped());
            continue;
        }
        require(take({ &quote, 1 }));
        return text;
    }
}

/// What the characters behind a backslash stand for: a number, a name, or the character itself.
char32_t StringTable::takeEscaped()
{
    require(!_rest.empty());
    if (octalDigits.find(_rest.front()) != std::string_view::npos)
        return takeNumber(8, mostOctalDigits);
    if (take("U"))
        return takeNumber(16, mostHexadecimalDigits);
    const Utf8Character character = firstCharacter(_rest);
    const std::size_t name = escapeNames.find(takeTo(character.length));
    return name == std::string_view::npos ? character.codePoint : static_cast<char32_t>(escapedCharacters[name]);
}

char32_t StringTable::takeNumber(int base, std::size_t mostDigits)
{
    const std::string_view digits = _rest.substr(0, mostDigits);
    std::uint16_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    require(error == std::errc());
    takeTo(static_cast<std::size_t>(end - digits.data()));
    return number;
}

std::string utf8Of(std::string_view bytes)
{
    if (bytes.starts_with(bigEndianMark))
        return utf8FromUtf16(bytes.substr(bigEndianMark.size()), std::endian::big);
    if (bytes.starts_with(littleEndianMark))
        return utf8FromUtf16(bytes.substr(littleEndianMark.size()), std::endian::little);
    if (bytes.starts_with(utf8Mark))
        bytes.remove_prefix(utf8Mark.size());
    require(isUtf8(bytes));
    return std::string(bytes);
}

} // namespace

Value valueOfStringTable(std::string_view bytes)
{
    const std::string text = utf8Of(bytes);
    return StringTable(text).entries();
}
