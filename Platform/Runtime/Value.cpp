#include "Runtime/Value.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <unordered_map>

namespace {

/// Up to so many members and bytes are compared without a record of them, which costs more than the comparison.
constexpr std::size_t mostWithoutRecord = 100'000;

constexpr const char* spaces = " \t\n\r\f\v";

const Value nullValue;

bool readsAsTrue(const std::string& text)
{
    std::size_t i = text.find_first_not_of(spaces);
    if (i == std::string::npos)
        return false;
    if (text[i] == '+' || text[i] == '-')
        ++i;
    i = text.find_first_not_of('0', i);
    return i != std::string::npos && std::string_view("YyTt123456789").find(text[i]) != std::string_view::npos;
}

/// The text from its number on, without spaces and plus sign before it; empty where it does not begin with a number.
std::string_view fromNumber(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(spaces), text.size()));
    std::string_view digits = text;
    if (digits.starts_with('+') || digits.starts_with('-'))
        digits.remove_prefix(1);
    const bool isNumber =
        !digits.empty() && std::string_view(".0123456789").find(digits.front()) != std::string_view::npos;
    if (!isNumber)
        return {};
    return text.front() == '+' ? digits : text;
}

/// Spelt with a decimal point, whatever the user's locale.
double realOf(std::string_view text)
{
    const std::string_view number = fromNumber(text);
    double real = 0;
    std::from_chars(number.data(), number.data() + number.size(), real);
    return real;
}

/// The integer that the text begins with; nothing for one with fraction or exponent, and for one beyond the range.
std::optional<std::int64_t> integerOf(std::string_view text)
{
    const std::string_view number = fromNumber(text);
    std::int64_t integer = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), integer);
    const std::string_view rest(end, static_cast<std::size_t>(number.data() + number.size() - end));
    if (error != std::errc() || rest.find_first_of(".eE") == 0)
        return std::nullopt;
    return integer;
}

std::int64_t clampedToInteger(double number)
{
    constexpr double limit = 9223372036854775808.0;
    if (std::isnan(number))
        return 0;
    if (number >= limit)
        return std::numeric_limits<std::int64_t>::max();
    if (number <= -limit)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(number);
}

} // namespace

Value::Value(std::optional<std::string> value)
{
    if (value)
        _storage = std::make_shared<const std::string>(std::move(*value));
}

Value::Value(Bytes value)
    : _storage(std::make_shared<const Bytes>(std::move(value)))
{
}

Value::Value(Array value)
    : _storage(std::make_shared<const Array>(std::move(value)))
{
}

Value::Value(Dictionary value)
    : _storage(std::make_shared<const Dictionary>(std::move(value)))
{
}

Value::Value(const Class* value)
{
    if (value)
        _storage = value;
}

bool Value::isNumber() const
{
    return kind() == Kind::Integer || kind() == Kind::Unsigned || kind() == Kind::Real;
}

bool Value::boolValue() const
{
    switch (kind()) {
    case Kind::Boolean:
        return boolean();
    case Kind::Integer:
        return integer() != 0;
    case Kind::Unsigned:
        return true;
    case Kind::Real:
        return real() != 0;
    case Kind::String:
        return readsAsTrue(*string());
    default:
        return false;
    }
}

double Value::doubleValue() const
{
    switch (kind()) {
    case Kind::Boolean:
        return boolean() ? 1 : 0;
    case Kind::Integer:
        return static_cast<double>(integer());
    case Kind::Unsigned:
        return static_cast<double>(unsignedInteger());
    case Kind::Real:
        return real();
    case Kind::String:
        return realOf(*string());
    default:
        return 0;
    }
}

std::int64_t Value::integerValue() const
{
    if (kind() == Kind::Integer)
        return integer();
    const auto exact = kind() == Kind::String ? integerOf(*string()) : std::nullopt;
    return exact ? *exact : clampedToInteger(doubleValue());
}

const Class* Value::classObject() const
{
    const auto* held = std::get_if<const Class*>(&_storage);
    return held ? *held : nullptr;
}

std::shared_ptr<NSObject> Value::object() const
{
    const auto* held = std::get_if<std::shared_ptr<NSObject>>(&_storage);
    return held ? *held : nullptr;
}

std::optional<std::string> Value::optionalString() const
{
    if (const auto* text = string())
        return *text;
    return std::nullopt;
}

const Value& Value::operator[](std::string_view key) const
{
    const auto* entries = dictionary();
    return entries ? valueForKey(*entries, key) : nullValue;
}

/// What counts as equal in one comparison, in groups of containers, texts and data. Two that were compared, or are
/// being compared, are in one group: if they differ after all, the whole comparison fails.
class Value::Compared {
public:
    /// Whether two of that size count as equal already. From now on they do.
    bool join(const void* content, const void* other, std::size_t size)
    {
        _size += size + 1;
        if (content == other || _size <= mostWithoutRecord)
            return content == other;
        const void* group = groupOf(content);
        const void* otherGroup = groupOf(other);
        if (group != otherGroup)
            _parents.insert_or_assign(group, otherGroup);
        return group == otherGroup;
    }

private:
    const void* groupOf(const void* content)
    {
        for (auto entry = _parents.find(content); entry != _parents.end(); entry = _parents.find(content)) {
            const auto parent = _parents.find(entry->second);
            if (parent != _parents.end())
                entry->second = parent->second;
            content = entry->second;
        }
        return content;
    }

    std::unordered_map<const void*, const void*> _parents;
    std::size_t _size = 0;
};

bool Value::operator==(const Value& other) const
{
    Compared compared;
    return equals(other, compared);
}

bool Value::equals(const Value& other, Compared& compared) const
{
    const auto equal = [&](const auto* content, const auto* otherContent, const auto& areEqual) {
        return content->size() == otherContent->size()
            && (compared.join(content, otherContent, content->size())
                || std::equal(content->begin(), content->end(), otherContent->begin(), areEqual));
    };
    if (kind() != other.kind())
        return false;
    if (string())
        return equal(string(), other.string(), std::equal_to<>());
    if (data())
        return equal(data(), other.data(), std::equal_to<>());
    if (array())
        return equal(array(), other.array(), [&](const auto& a, const auto& b) { return a.equals(b, compared); });
    if (dictionary())
        return equal(dictionary(), other.dictionary(),
            [&](const auto& a, const auto& b) { return a.first == b.first && a.second.equals(b.second, compared); });
    return _storage == other._storage;
}

const Value& valueForKey(const Dictionary& dictionary, std::string_view key)
{
    const auto entry = dictionary.find(key);
    return entry == dictionary.end() ? nullValue : entry->second;
}
