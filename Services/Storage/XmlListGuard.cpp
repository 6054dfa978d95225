#include "Storage/XmlListGuard.h"

#include "Storage/PropertyListLimits.h"
#include "Storage/Utf8.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <string_view>

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view spaces = " \t\r\n";
constexpr std::string_view commentBegin = "<!--";
constexpr std::string_view commentEnd = "-->";
constexpr std::string_view instructionBegin = "<?";
constexpr std::string_view instructionEnd = "?>";
constexpr std::string_view doctypeBegin = "<!DOCTYPE";
constexpr std::string_view cdataBegin = "<![CDATA[";
constexpr std::string_view cdataEnd = "]]>";

/// Longer numbers are no numbers that anybody wrote.
constexpr std::size_t longestNumber = 1000;

/// libplist compares a new key with the keys of its dictionary that share its hash: in a file made for it, with all.
/// That many comparisons take it half a second; one dictionary of 10,000 keys may need as many.
constexpr std::size_t mostKeyComparisons = 50'000'000;

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(spaces);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(spaces) - first + 1);
}

template <class Number>
std::optional<Number> numberFrom(std::string_view digits, int base)
{
    Number number = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number, base);
    if (digits.empty() || result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return number;
}

/// Removes the sign in front, if there is one; whether it was a minus.
bool takeSign(std::string_view& text)
{
    if (text.empty() || (text.front() != '-' && text.front() != '+'))
        return false;
    const bool isNegative = text.front() == '-';
    text.remove_prefix(1);
    return isNegative;
}

std::optional<std::string> plainInteger(std::string_view text)
{
    constexpr std::uint64_t largestNegative = std::uint64_t { 1 } << 63;
    const bool isNegative = takeSign(text);
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        base = 16;
    }
    const auto magnitude = numberFrom<std::uint64_t>(text, base);
    if (!magnitude || (isNegative && *magnitude > largestNegative))
        return std::nullopt;
    return std::string(isNegative ? "-" : "").append(std::to_string(*magnitude));
}

/// The number as a whole mantissa times a power of two, which needs no decimal sign.
std::string hexadecimal(double magnitude)
{
    constexpr int digits = std::numeric_limits<double>::digits;
    int exponent = 0;
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(std::frexp(magnitude, &exponent), digits));
    char text[2 * sizeof mantissa];
    const auto end = std::to_chars(std::begin(text), std::end(text), mantissa, 16).ptr;
    return std::string("0x").append(text, end).append("p").append(std::to_string(exponent - digits));
}

std::optional<std::string> plainReal(std::string_view text)
{
    const std::string sign = takeSign(text) ? "-" : "";
    double magnitude = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, magnitude);
    if (text.empty() || result.ec != std::errc() || result.ptr != end || std::signbit(magnitude))
        return std::nullopt;
    if (std::isnan(magnitude))
        return sign + "nan";
    if (std::isinf(magnitude))
        return sign + "inf";
    return sign + hexadecimal(magnitude);
}

/// The number that the digits at those places make, or nothing when something else stands there.
std::optional<int> digitsAt(std::string_view text, std::size_t at, std::size_t count)
{
    const std::string_view digits = text.substr(at, count);
    if (!std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    return numberFrom<int>(digits, 10);
}

std::optional<std::string> plainDate(std::string_view text)
{
    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    if (text.size() != form.size())
        return std::nullopt;
    for (const std::size_t separator : { 4, 7, 10, 13, 16, 19 }) {
        if (text[separator] != form[separator])
            return std::nullopt;
    }
    const auto year = digitsAt(text, 0, 4), month = digitsAt(text, 5, 2), day = digitsAt(text, 8, 2);
    const auto hour = digitsAt(text, 11, 2), minute = digitsAt(text, 14, 2), second = digitsAt(text, 17, 2);
    if (!year || !month || !day || !hour || !minute || !second)
        return std::nullopt;
    const std::chrono::year_month_day date(std::chrono::year { *year },
        std::chrono::month { static_cast<unsigned>(*month) }, std::chrono::day { static_cast<unsigned>(*day) });
    if (!date.ok() || *hour > 23 || *minute > 59 || *second > 59)
        return std::nullopt;
    return std::string(text);
}

bool isBase64Digit(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/';
}

std::optional<std::string> plainBase64(std::string_view text)
{
    constexpr std::size_t group = 4;
    std::string digits;
    digits.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
        [](char c) { return spaces.find(c) == std::string_view::npos; });
    std::string_view unpadded = digits;
    for (int padding = 0; padding < 2 && unpadded.ends_with('='); ++padding)
        unpadded.remove_suffix(1);
    if (digits.size() % group != 0 || !std::all_of(unpadded.begin(), unpadded.end(), isBase64Digit))
        return std::nullopt;
    return digits;
}

/// The character that stands for "&name;", or nothing.
std::optional<std::uint32_t> entity(std::string_view name)
{
    constexpr std::pair<std::string_view, char> known[] = { { "amp", '&' }, { "lt", '<' }, { "gt", '>' },
        { "quot", '"' }, { "apos", '\'' } };
    for (const auto& [knownName, character] : known) {
        if (name == knownName)
            return static_cast<std::uint32_t>(character);
    }
    if (!name.starts_with('#'))
        return std::nullopt;
    name.remove_prefix(1);
    const bool isHexadecimal = name.starts_with('x');
    if (isHexadecimal)
        name.remove_prefix(1);
    const auto character = numberFrom<std::uint32_t>(name, isHexadecimal ? 16 : 10);
    if (!character || *character == 0 || !isCharacter(*character))
        return std::nullopt;
    return character;
}

struct Tag {
    enum class Form { Opening, Closing, Empty };

    Form form = Form::Opening;
    std::string_view name;
};

struct Container {
    std::string_view name;
    bool hasKey = false;
    std::size_t keys = 0;

    bool isDictionary() const { return name == "dict"; }
};

/// Reads the list from front to back and writes its plain form. Every step says whether the list is still sound.
class XmlList {
public:
    explicit XmlList(std::string_view text)
        : _rest(text)
    {
    }

    bool rewrite();
    std::string takeResult() { return std::move(_result); }

private:
    bool rewriteRoot(const Tag& first);
    bool rewriteElement(const Tag& tag);
    bool rewriteKey(const Tag& tag);
    bool rewriteValue(const Tag& tag);
    bool rewriteScalar(const Tag& tag);
    bool closeContainer(const Tag& tag);
    bool writeText(std::string_view name, std::string_view text);
    bool writeScalar(std::string_view name, const std::optional<std::string>& text);
    bool countValue() { return ++_values <= PropertyListLimits::values; }

    bool skipMarkup();
    bool skipDoctype();
    bool skipPast(std::string_view end);
    bool startsWith(std::string_view text) const { return _rest.starts_with(text); }
    void skipSpaces() { _rest.remove_prefix(std::min(_rest.find_first_not_of(spaces), _rest.size())); }
    std::optional<Tag> readTag();
    std::optional<std::string_view> takeUntil(std::string_view end);
    std::optional<std::string_view> contentOf(const Tag& tag);
    std::optional<std::string> textOf(const Tag& tag);
    bool appendPiece(std::string& text);
    bool appendEntity(std::string& text);
    bool readClosing(std::string_view name);

    std::string_view _rest;
    std::string _result;
    std::vector<Container> _open;
    std::size_t _values = 0;
    std::size_t _keyComparisons = 0;
};

bool XmlList::rewrite()
{
    _result = "<plist>";
    if (!skipMarkup())
        return false;
    const auto first = readTag();
    if (!first)
        return false;
    if (first->name != "plist") {
        if (!rewriteRoot(*first))
            return false;
    } else {
        if (first->form != Tag::Form::Opening || !skipMarkup())
            return false;
        const auto root = readTag();
        if (!root || !rewriteRoot(*root) || !skipMarkup() || !readClosing("plist"))
            return false;
    }
    _result += "</plist>";
    return skipMarkup() && _rest.empty();
}

bool XmlList::rewriteRoot(const Tag& first)
{
    if (!rewriteElement(first))
        return false;
    while (!_open.empty()) {
        if (!skipMarkup())
            return false;
        const auto tag = readTag();
        if (!tag || !rewriteElement(*tag))
            return false;
    }
    return true;
}

bool XmlList::rewriteElement(const Tag& tag)
{
    if (tag.form == Tag::Form::Closing)
        return closeContainer(tag);
    return countValue() && (tag.name == "key" ? rewriteKey(tag) : rewriteValue(tag));
}

bool XmlList::closeContainer(const Tag& tag)
{
    if (_open.empty() || _open.back().name != tag.name || _open.back().hasKey)
        return false;
    _open.pop_back();
    _result.append("</").append(tag.name).append(">");
    return true;
}

bool XmlList::rewriteKey(const Tag& tag)
{
    if (_open.empty() || !_open.back().isDictionary() || _open.back().hasKey)
        return false;
    Container& dictionary = _open.back();
    _keyComparisons += dictionary.keys++;
    dictionary.hasKey = true;
    const auto text = textOf(tag);
    return _keyComparisons <= mostKeyComparisons && text && writeText(tag.name, *text);
}

bool XmlList::rewriteValue(const Tag& tag)
{
    if (!_open.empty() && _open.back().isDictionary()) {
        if (!_open.back().hasKey)
            return false;
        _open.back().hasKey = false;
    }
    if (tag.name != "array" && tag.name != "dict")
        return rewriteScalar(tag);
    if (_open.size() == PropertyListLimits::depth)
        return false;
    const bool isEmpty = tag.form == Tag::Form::Empty;
    if (!isEmpty)
        _open.push_back({ tag.name });
    _result.append("<").append(tag.name).append(isEmpty ? "/>" : ">");
    return true;
}

bool XmlList::rewriteScalar(const Tag& tag)
{
    if (tag.name == "string") {
        const auto text = textOf(tag);
        return text && writeText(tag.name, *text);
    }
    const auto content = contentOf(tag);
    if (!content)
        return false;
    if (tag.name == "true" || tag.name == "false") {
        _result.append("<").append(tag.name).append("/>");
        return content->empty();
    }
    if (tag.name == "data")
        return writeScalar(tag.name, plainBase64(*content));
    const std::string_view text = trimmed(*content);
    if (text.size() > longestNumber)
        return false;
    if (tag.name == "integer")
        return writeScalar(tag.name, plainInteger(text));
    if (tag.name == "real")
        return writeScalar(tag.name, plainReal(text));
    return tag.name == "date" && writeScalar(tag.name, plainDate(text));
}

bool XmlList::writeText(std::string_view name, std::string_view text)
{
    _result.append("<").append(name).append(">").append(cdataBegin);
    // The end mark of CDATA within the text is shared out between two pieces of CDATA; each costs libplist as a value
    // does.
    for (std::size_t end = text.find(cdataEnd); end != std::string_view::npos; end = text.find(cdataEnd)) {
        constexpr std::size_t firstShare = 2;
        if (!countValue())
            return false;
        _result.append(text.substr(0, end + firstShare)).append(cdataEnd).append(cdataBegin);
        text.remove_prefix(end + firstShare);
    }
    _result.append(text).append(cdataEnd).append("</").append(name).append(">");
    return true;
}

bool XmlList::writeScalar(std::string_view name, const std::optional<std::string>& text)
{
    if (text)
        _result.append("<").append(name).append(">").append(*text).append("</").append(name).append(">");
    return text.has_value();
}

/// Spaces, comments, processing instructions and the document type.
bool XmlList::skipMarkup()
{
    for (;;) {
        skipSpaces();
        bool isWhole = true;
        if (startsWith(commentBegin))
            isWhole = skipPast(commentEnd);
        else if (startsWith(instructionBegin))
            isWhole = skipPast(instructionEnd);
        else if (startsWith(doctypeBegin))
            isWhole = _open.empty() && skipDoctype();
        else
            return true;
        if (!isWhole)
            return false;
    }
}

/// A document type that declares entities of its own makes no list.
bool XmlList::skipDoctype()
{
    for (;;) {
        _rest.remove_prefix(std::min(_rest.find_first_of("\"'[>"), _rest.size()));
        if (_rest.empty() || _rest.front() == '[')
            return false;
        const char found = _rest.front();
        _rest.remove_prefix(1);
        if (found == '>')
            return true;
        if (!takeUntil({ &found, 1 }))
            return false;
    }
}

bool XmlList::skipPast(std::string_view end)
{
    return takeUntil(end).has_value();
}

/// What stands before `end`; both are taken.
std::optional<std::string_view> XmlList::takeUntil(std::string_view end)
{
    const std::size_t found = _rest.find(end);
    if (found == std::string_view::npos)
        return std::nullopt;
    const std::string_view taken = _rest.substr(0, found);
    _rest.remove_prefix(found + end.size());
    return taken;
}

std::optional<Tag> XmlList::readTag()
{
    if (!startsWith("<"))
        return std::nullopt;
    _rest.remove_prefix(1);
    Tag tag;
    if (startsWith("/")) {
        tag.form = Tag::Form::Closing;
        _rest.remove_prefix(1);
    }
    const std::size_t nameEnd = _rest.find_first_of(" \t\r\n/>");
    if (nameEnd == std::string_view::npos)
        return std::nullopt;
    tag.name = _rest.substr(0, nameEnd);
    _rest.remove_prefix(nameEnd);
    for (;;) {
        _rest.remove_prefix(std::min(_rest.find_first_of("\"'<>/"), _rest.size()));
        if (_rest.empty() || _rest.front() == '<')
            return std::nullopt;
        const char found = _rest.front();
        _rest.remove_prefix(1);
        if (found == '>')
            return tag;
        if (found == '/') {
            if (tag.form == Tag::Form::Closing || !startsWith(">"))
                return std::nullopt;
            tag.form = Tag::Form::Empty;
        } else if (!takeUntil({ &found, 1 })) {
            return std::nullopt;
        }
    }
}

bool XmlList::readClosing(std::string_view name)
{
    const auto tag = readTag();
    return tag && tag->form == Tag::Form::Closing && tag->name == name;
}

/// What stands in the element of a number, date, data or boolean: neither markup nor entities.
std::optional<std::string_view> XmlList::contentOf(const Tag& tag)
{
    if (tag.form == Tag::Form::Empty)
        return std::string_view();
    const std::string_view content = _rest.substr(0, _rest.find('<'));
    _rest.remove_prefix(content.size());
    if (!readClosing(tag.name))
        return std::nullopt;
    return content;
}

/// The text of a string or key, its comments left out.
std::optional<std::string> XmlList::textOf(const Tag& tag)
{
    std::string text;
    if (tag.form == Tag::Form::Empty)
        return text;
    while (!startsWith("</")) {
        if (!appendPiece(text))
            return std::nullopt;
    }
    if (!readClosing(tag.name))
        return std::nullopt;
    return text;
}

bool XmlList::appendPiece(std::string& text)
{
    if (startsWith("&"))
        return appendEntity(text);
    if (startsWith(commentBegin))
        return skipPast(commentEnd);
    if (startsWith(cdataBegin)) {
        _rest.remove_prefix(cdataBegin.size());
        const auto data = takeUntil(cdataEnd);
        text.append(data.value_or(std::string_view()));
        return data.has_value();
    }
    const std::string_view plain = _rest.substr(0, _rest.find_first_of("<&"));
    text.append(plain);
    _rest.remove_prefix(plain.size());
    return !plain.empty();
}

bool XmlList::appendEntity(std::string& text)
{
    constexpr std::size_t longestEntity = 16;
    const std::size_t end = _rest.substr(0, longestEntity).find(';');
    if (end == std::string_view::npos)
        return false;
    const auto character = entity(_rest.substr(1, end - 1));
    if (character)
        appendUtf8(text, *character);
    _rest.remove_prefix(end + 1);
    return character.has_value();
}

} // namespace

std::optional<std::string> guardedXmlList(const Bytes& bytes)
{
    if (bytes.size() > PropertyListLimits::bytes)
        return std::nullopt;
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    // libplist ends a text at its first NUL.
    if (text.find('\0') != std::string_view::npos || !isUtf8(text))
        return std::nullopt;
    XmlList list(text);
    if (!list.rewrite())
        return std::nullopt;
    return list.takeResult();
}
