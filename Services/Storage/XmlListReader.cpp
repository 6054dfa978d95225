#include "Storage/XmlListReader.h"

#include "Storage/PropertyListRules.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <expat.h>
#include <locale.h>

namespace {

constexpr std::string_view spaces = " \t\r\n";
constexpr std::string_view uidKey = "CF$UID";
constexpr std::string_view dateForm = "0000-00-00T00:00:00Z";
constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::chrono::sys_days referenceDay = std::chrono::year { 2001 } / 1 / 1;

/// Of entities and attributes. Expat follows entities in entities by recursion, and adds the attributes that have
/// default values to each element.
constexpr int mostDeclarations = 256;
/// What entities may add to the content of a file. Expat itself lets them make it a hundred times as long.
constexpr std::size_t mostAddedContent = std::size_t { 8 } << 20;
/// ISO-8859-1 in UTF-8.
constexpr std::size_t mostBytesPerByte = 2;
constexpr std::size_t shortestElement = std::string_view("<key/>").size();

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(spaces);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(spaces) - first + 1);
}

std::uint64_t numberOf(std::string_view digits, int base)
{
    std::uint64_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number, base);
    require(result.ec == std::errc() && result.ptr == end);
    return number;
}

/// Decimal, or hexadecimal behind 0x; from -2^63 to 2^64-1.
Value integerOf(std::string_view text)
{
    constexpr std::uint64_t largestNegative = std::uint64_t { 1 } << 63;
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative || text.starts_with('+') ? 1 : 0);
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const std::uint64_t magnitude = isHexadecimal ? numberOf(text.substr(2), 16) : numberOf(text, 10);
    require(!isNegative || magnitude <= largestNegative);
    return isNegative ? Value(static_cast<std::int64_t>(-magnitude)) : Value(magnitude);
}

/// With a decimal point whatever the user's locale; infinity and zero stand for what is beyond the range of double.
Value realOf(const std::string& text)
{
    static const locale_t withPoint = newlocale(LC_ALL_MASK, "C", nullptr);
    // strtod reads hexadecimal numbers too.
    require(!text.empty() && text.find_first_of("xX") == std::string::npos);
    char* end = nullptr;
    const double real = strtod_l(text.c_str(), &end, withPoint);
    require(end == text.c_str() + text.size());
    return real;
}

Value dateOf(std::string_view text)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    require(
        std::ranges::equal(text, dateForm, [&](char c, char form) { return form == '0' ? isDigit(c) : c == form; }));
    const auto number = [&](std::size_t at, std::size_t digits) {
        return static_cast<unsigned>(numberOf(text.substr(at, digits), 10));
    };
    const unsigned hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
    const auto year = std::chrono::year(static_cast<int>(number(0, 4)));
    const auto day = year / std::chrono::month(number(5, 2)) / std::chrono::day(number(8, 2));
    require(day.ok() && hour < 24 && minute < 60 && second < 60);
    const std::chrono::duration<double> seconds = std::chrono::sys_days(day) - referenceDay + std::chrono::hours(hour)
        + std::chrono::minutes(minute) + std::chrono::seconds(second);
    return Date { seconds.count() };
}

/// Base64 in whole groups of four digits.
Value dataOf(std::string_view text)
{
    Bytes data;
    std::uint32_t bits = 0;
    std::size_t digits = 0;
    std::size_t padding = 0;
    for (const char c : text) {
        if (spaces.find(c) != std::string_view::npos)
            continue;
        padding += c == '=' ? 1 : 0;
        const std::size_t value = c == '=' ? 0 : base64Digits.find(c);
        require(value != std::string_view::npos && (c == '=' || padding == 0));
        bits = bits << 6 | static_cast<std::uint32_t>(value);
        if (++digits % 4 == 0) {
            for (const int shift : { 16, 8, 0 })
                data.push_back(static_cast<std::uint8_t>(bits >> shift));
        }
    }
    require(digits % 4 == 0 && padding <= 2);
    data.erase(data.end() - static_cast<std::ptrdiff_t>(padding), data.end());
    return data;
}

Value uidOrDictionary(Dictionary entries)
{
    const Value& index = valueForKey(entries, uidKey);
    if (entries.size() != 1)
        return entries;
    if (index.kind() == Value::Kind::Unsigned)
        return Uid { index.unsignedInteger() };
    if (index.kind() == Value::Kind::Integer && index.integer() >= 0)
        return Uid { static_cast<std::uint64_t>(index.integer()) };
    return entries;
}

Value scalarOf(std::string_view name, std::string text)
{
    if (name == "string")
        return text;
    if (name == "integer")
        return integerOf(trimmed(text));
    if (name == "real")
        return realOf(std::string(trimmed(text)));
    if (name == "date")
        return dateOf(trimmed(text));
    if (name == "data")
        return dataOf(text);
    require((name == "true" || name == "false") && text.empty());
    return name == "true";
}

bool isContainer(std::string_view name)
{
    return name == "plist" || name == "array" || name == "dict";
}

/// Builds the list from what expat finds. Expat's frames know no exceptions, so the first one stops the parser.
class XmlList {
public:
    XmlList();
    Value read(std::string_view bytes);

private:
    struct Element {
        std::string name;
        /// Of a scalar or key.
        std::string text;
        /// Of a dictionary, while its value is missing.
        std::optional<std::string> key;
        Array items;
        Dictionary entries;
    };
    struct ParserDeleter {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    void refuseEntities();
    template <class Step>
    static void take(void* list, Step step);
    void open(std::string_view name);
    void addText(std::string_view text);
    void close();
    void addKey(std::string key);
    void addValue(Value value);
    void countDeclaration() { require(++_declarations <= mostDeclarations); }
    void countContent(std::size_t size) { require((_content += size) <= _mostContent); }

    std::unique_ptr<XML_ParserStruct, ParserDeleter> _parser { XML_ParserCreate(nullptr) };
    bool _isSound = true;
    int _declarations = 0;
    std::size_t _content = 0;
    std::size_t _mostContent = 0;
    std::size_t _depth = 0;
    std::vector<Element> _open;
    Value _root;
};

XmlList::XmlList()
{
    XML_SetUserData(_parser.get(), this);
    XML_SetElementHandler(
        _parser.get(),
        [](void* list, const char* name, const char**) { take(list, [&](XmlList& self) { self.open(name); }); },
        [](void* list, const char*) { take(list, [](XmlList& self) { self.close(); }); });
    XML_SetCharacterDataHandler(_parser.get(), [](void* list, const char* text, int size) {
        take(list, [&](XmlList& self) { self.addText({ text, static_cast<std::size_t>(size) }); });
    });
    refuseEntities();
}

/// Those that are not declared, those of other files, and too many.
void XmlList::refuseEntities()
{
    XML_SetSkippedEntityHandler(
        _parser.get(), [](void* list, const char*, int) { take(list, [](XmlList&) { require(false); }); });
    XML_SetExternalEntityRefHandler(_parser.get(),
        [](XML_Parser, const char*, const char*, const char*, const char*) -> int { return XML_STATUS_ERROR; });
    XML_SetEntityDeclHandler(_parser.get(),
        [](void* list, const char*, int, const char*, int, const char*, const char*, const char*, const char*) {
            take(list, [](XmlList& self) { self.countDeclaration(); });
        });
    XML_SetAttlistDeclHandler(_parser.get(), [](void* list, const char*, const char*, const char*, const char*, int) {
        take(list, [](XmlList& self) { self.countDeclaration(); });
    });
}

template <class Step>
void XmlList::take(void* list, Step step)
{
    XmlList& self = *static_cast<XmlList*>(list);
    try {
        if (self._isSound)
            step(self);
    } catch (const MalformedList&) {
        self._isSound = false;
        XML_StopParser(self._parser.get(), XML_FALSE);
    }
}

Value XmlList::read(std::string_view bytes)
{
    _mostContent = mostBytesPerByte * bytes.size() + mostAddedContent;
    const auto status = XML_Parse(_parser.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE);
    require(status == XML_STATUS_OK && _isSound);
    return _root;
}

void XmlList::open(std::string_view name)
{
    countContent(shortestElement);
    require(_open.empty() || (name != "plist" && isContainer(_open.back().name)));
    if (isContainer(name) && name != "plist")
        require(++_depth <= PropertyListLimits::depth);
    _open.emplace_back().name = name;
}

void XmlList::addText(std::string_view text)
{
    countContent(text.size());
    Element& element = _open.back();
    if (isContainer(element.name))
        require(text.find_first_not_of(spaces) == std::string_view::npos);
    else
        element.text += text;
}

void XmlList::close()
{
    Element element = std::move(_open.back());
    _open.pop_back();
    if (element.name == "plist")
        return require(!_root.isNull());
    if (element.name == "key")
        return addKey(std::move(element.text));
    if (!isContainer(element.name))
        return addValue(scalarOf(element.name, std::move(element.text)));
    --_depth;
    require(!element.key);
    addValue(element.name == "array" ? Value(std::move(element.items)) : uidOrDictionary(std::move(element.entries)));
}

void XmlList::addKey(std::string key)
{
    require(!_open.empty() && _open.back().name == "dict" && !_open.back().key);
    _open.back().key = std::move(key);
}

void XmlList::addValue(Value value)
{
    if (_open.empty() || _open.back().name == "plist") {
        require(_root.isNull());
        _root = std::move(value);
        return;
    }
    Element& parent = _open.back();
    if (parent.name == "array")
        return parent.items.push_back(std::move(value));
    require(parent.key.has_value());
    parent.entries.insert_or_assign(parent.entries.end(), std::move(*parent.key), std::move(value));
    parent.key.reset();
}

} // namespace

Value valueOfXmlList(std::string_view bytes)
{
    return XmlList().read(bytes);
}
