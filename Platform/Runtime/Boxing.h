#pragma once

#include "Runtime/Value.h"

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// How the arguments and the result of a method travel as values when it is performed by its selector.
/// Lists of objects travel as arrays. A structure says itself how, by `fromValue` and a conversion to Value.
namespace boxing {

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

template <class T>
inline constexpr bool isObjectList = false;
template <class T>
inline constexpr bool isObjectList<std::vector<std::shared_ptr<T>>> = true;

template <class T>
concept Structure = requires(const Value& value)
{
    {
        T::fromValue(value)
        } -> std::same_as<T>;
};

/// The number of that index in an array; null where there is none.
inline Value numberAt(const Value& list, std::size_t index)
{
    const auto* numbers = list.array();
    return numbers && index < numbers->size() && (*numbers)[index].isNumber() ? (*numbers)[index] : Value();
}

/// The objects of an array that are of the class of the list; none for a value that is no array.
template <class List>
List objectsOf(const Value& value)
{
    List objects;
    for (const Value& element : value.array() ? *value.array() : Value::Array()) {
        if (auto object = element.as<typename List::value_type::element_type>())
            objects.push_back(std::move(object));
    }
    return objects;
}

/// The value as a T: null, zero or empty where it is of another type.
template <class T>
T unboxed(const Value& value)
{
    if constexpr (std::is_same_v<T, Value>)
        return value;
    else if constexpr (std::is_same_v<T, bool>)
        return value.boolValue();
    else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>)
        return static_cast<T>(value.integerValue());
    else if constexpr (std::is_floating_point_v<T>)
        return static_cast<T>(value.doubleValue());
    else if constexpr (std::is_same_v<T, std::optional<std::string>>)
        return value.optionalString();
    else if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, std::string_view>)
        return value.string() ? T(*value.string()) : T();
    else if constexpr (std::is_same_v<T, std::optional<Dictionary>> || std::is_same_v<T, Dictionary>)
        return value.dictionary() ? T(*value.dictionary()) : T();
    else if constexpr (std::is_same_v<T, const Class*>)
        return value.classObject();
    else if constexpr (Structure<T>)
        return T::fromValue(value);
    else if constexpr (isObjectList<T>)
        return objectsOf<T>(value);
    else
        return value.as<typename T::element_type>();
}

/// The result of a method as a value.
template <class T>
Value boxed(const T& result)
{
    if constexpr (isOptional<T>) {
        return result ? boxed(*result) : Value();
    } else if constexpr (isObjectList<T>) {
        return Value::Array(result.begin(), result.end());
    } else if constexpr (std::is_enum_v<T>) {
        return static_cast<std::int64_t>(result);
    } else if constexpr (std::derived_from<T, NSObject>) {
        return std::const_pointer_cast<NSObject>(result.weak_from_this().lock());
    } else {
        return Value(result);
    }
}

/// A parameter while the method runs.
template <class P>
class Parameter {
public:
    explicit Parameter(const Value& value)
        : _held(unboxed<std::decay_t<P>>(value))
    {
    }
    bool isThere() const { return true; }
    std::decay_t<P>& get() { return _held; }

private:
    std::decay_t<P> _held;
};

/// A reference to an object, which cannot be null: without the object the method is not called.
template <class P>
requires std::is_reference_v<P> && std::derived_from<std::decay_t<P>, NSObject>
class Parameter<P> {
public:
    explicit Parameter(const Value& value)
        : _held(value.as<std::decay_t<P>>())
    {
    }
    bool isThere() const { return _held != nullptr; }
    std::decay_t<P>& get() { return *_held; }

private:
    std::shared_ptr<std::decay_t<P>> _held;
};

}
