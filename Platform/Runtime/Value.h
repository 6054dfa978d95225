#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

class Class;
class NSObject;

/// A run of bytes, as a property list or a file holds it.
using Bytes = std::vector<std::uint8_t>;

/// A moment, in seconds since 2001-01-01 00:00:00 UTC, fractions kept.
struct Date {
    double secondsSinceReferenceDate = 0;
    bool operator==(const Date&) const = default;
};

/// A reference into the object table of a keyed archive.
struct Uid {
    std::uint64_t index = 0;
    bool operator==(const Uid&) const = default;
};

/// What a row stores, a property list holds and a selector takes and gives: null, boolean, integer, real, string, data,
/// date, UID, array or dictionary. A row's properties may also hold an object or a class, which no property list can.
///
/// A value is immutable and cheap to copy: texts, data and containers are shared until somebody makes a new one. One
/// container may stand in many places of a value, so a small value can unfold to more than fits into memory.
/// Integers keep their sign: -5 and 2^64-5 are different values.
class Value {
public:
    using Array = std::vector<Value>;
    using Dictionary = std::map<std::string, Value, std::less<>>;

    enum class Kind {
        Null,
        Boolean,
        Integer,
        Unsigned,
        Real,
        String,
        Data,
        Date,
        Uid,
        Array,
        Dictionary,
        Object,
        Class
    };

    Value() = default;
    Value(std::nullptr_t) { }
    Value(bool value)
        : _storage(value)
    {
    }
    /// Held as Kind::Unsigned only above the largest signed integer, so that equal numbers are equal values.
    template <std::integral T>
    Value(T value)
    {
        if (std::cmp_greater(value, std::numeric_limits<std::int64_t>::max()))
            _storage = static_cast<std::uint64_t>(value);
        else
            _storage = static_cast<std::int64_t>(value);
    }
    Value(double value)
        : _storage(value)
    {
    }
    /// A null pointer makes the null value.
    Value(const char* value)
    {
        if (value)
            _storage = std::make_shared<const std::string>(value);
    }
    Value(std::string value)
        : _storage(std::make_shared<const std::string>(std::move(value)))
    {
    }
    Value(std::string_view value)
        : _storage(std::make_shared<const std::string>(value))
    {
    }
    Value(std::optional<std::string> value);
    Value(Bytes value);
    Value(Date value)
        : _storage(value)
    {
    }
    Value(Uid value)
        : _storage(value)
    {
    }
    Value(Array value);
    Value(Dictionary value);
    /// A null pointer makes the null value.
    template <class T>
    requires std::derived_from<T, NSObject> Value(std::shared_ptr<T> object)
    {
        if (object)
            _storage = std::shared_ptr<NSObject>(std::move(object));
    }
    Value(const Class* value);

    Kind kind() const { return static_cast<Kind>(_storage.index()); }
    bool isNull() const { return kind() == Kind::Null; }
    bool isNumber() const;

    /// The boolean reading: false for null, zero, and texts that do not begin (after spaces, sign and zeros) with Y, T
    /// or a digit 1 to 9; false for everything that is neither boolean, number nor string.
    bool boolValue() const;
    /// The number, or 0 for anything that is no number. Booleans read as 0 and 1, texts as the number they begin with,
    /// or 0 where it is beyond the range.
    double doubleValue() const;
    /// The integer, cut towards zero and clamped to the range; 0 for anything that is no number.
    std::int64_t integerValue() const;

    /// Pointers are null when the value is of another kind.
    const std::string* string() const { return shared<std::string>(); }
    const Bytes* data() const { return shared<Bytes>(); }
    const Array* array() const { return shared<Array>(); }
    const Dictionary* dictionary() const { return shared<Dictionary>(); }
    const Class* classObject() const;
    std::shared_ptr<NSObject> object() const;
    /// The object as a T, or null when it is no object or not a T.
    template <class T>
    std::shared_ptr<T> as() const
    {
        return std::dynamic_pointer_cast<T>(object());
    }
    std::optional<std::string> optionalString() const;

    /// The payload of exactly that kind; the caller has checked kind().
    std::int64_t integer() const { return std::get<std::int64_t>(_storage); }
    std::uint64_t unsignedInteger() const { return std::get<std::uint64_t>(_storage); }
    double real() const { return std::get<double>(_storage); }
    bool boolean() const { return std::get<bool>(_storage); }
    Date date() const { return std::get<Date>(_storage); }
    Uid uid() const { return std::get<Uid>(_storage); }

    /// The entry of a dictionary, or the null value: no such key, or no dictionary.
    const Value& operator[](std::string_view key) const;

    /// Same kind and same content; objects and classes by identity. 1, 1.0 and true are three values. The time is
    /// proportional to the containers that there are, not to what they unfold to.
    bool operator==(const Value& other) const;

private:
    class Compared;

    bool equals(const Value& other, Compared& compared) const;
    template <class T>
    const T* shared() const
    {
        const auto* held = std::get_if<std::shared_ptr<const T>>(&_storage);
        return held ? held->get() : nullptr;
    }

    std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::shared_ptr<const std::string>,
        std::shared_ptr<const Bytes>, Date, Uid, std::shared_ptr<const Array>, std::shared_ptr<const Dictionary>,
        std::shared_ptr<NSObject>, const Class*>
        _storage;
};

using Dictionary = Value::Dictionary;
using Array = Value::Array;

/// The entry under a key, or the null value.
const Value& valueForKey(const Dictionary& dictionary, std::string_view key);
