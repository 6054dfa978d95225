#pragma once

#include "Runtime/Value.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

/// The selector of a C++ name: a `_` for each inner colon, the last one dropped.
/// `updateSettingsDict_forKey` with two arguments is `updateSettingsDict:forKey:`.
std::string selectorFromName(std::string_view name, std::size_t argumentCount);

/// A method that can be reached by its selector, with at most two arguments.
struct Method {
    using Function = Value (*)(NSObject&, const Value&, const Value&);

    std::string selector;
    Function function;

    /// The method of a member function. Arguments that the caller gives in another type arrive as null, zero or empty.
    template <auto member>
    static Method of(std::string_view name);
};

/// A class as the runtime knows it: its name, its superclass, how to make an instance, what its instances respond to.
/// Classes live as long as the process; one is equal to another when it is the same one.
class Class {
public:
    using Maker = std::shared_ptr<NSObject> (*)();

    /// Registers the class under its name. A name that is taken keeps its first class.
    Class(std::string name, const Class* superclass, Maker maker, std::initializer_list<Method> methods);
    Class(const Class&) = delete;
    Class& operator=(const Class&) = delete;

    const std::string& name() const { return _name; }
    /// Null for NSObject.
    const Class* superclass() const { return _superclass; }
    bool isSubclassOf(const Class& other) const;

    bool instancesRespondToSelector(std::string_view selector) const { return methodFor(selector) != nullptr; }
    /// The nearest implementation, going up from this class; null when there is none.
    const Method* methodFor(std::string_view selector) const;

    /// A new instance, not initialised yet; null for an abstract class.
    std::shared_ptr<NSObject> alloc() const { return _maker ? _maker() : nullptr; }
    /// A new instance as a T; null when the class is abstract or no T.
    template <class T>
    std::shared_ptr<T> allocAs() const
    {
        return std::dynamic_pointer_cast<T>(alloc());
    }

    template <class T>
    static constexpr Maker makerOf()
    {
        if constexpr (std::is_default_constructible_v<T> && !std::is_abstract_v<T>)
            return [] { return std::static_pointer_cast<NSObject>(std::make_shared<T>()); };
        else
            return nullptr;
    }

private:
    std::string _name;
    const Class* _superclass;
    Maker _maker;
    std::unordered_map<std::string_view, const Method*> _bySelector;
    std::vector<Method> _methods;
};

/// The class of that name, or null.
const Class* NSClassFromString(std::string_view name);

namespace runtime {

template <class T>
struct Argument {
    static T from(const Value& value)
    {
        if constexpr (std::is_same_v<T, Value>)
            return value;
        else if constexpr (std::is_same_v<T, bool>)
            return value.boolValue();
        else if constexpr (std::is_integral_v<T>)
            return static_cast<T>(value.integerValue());
        else if constexpr (std::is_same_v<T, std::string>)
            return value.optionalString().value_or(std::string());
        else if constexpr (std::is_same_v<T, const Class*>)
            return value.classObject();
        else
            return value.as<typename T::element_type>();
    }
};

template <class Owner, class Result, class... Arguments>
struct Signature {
    static constexpr std::size_t argumentCount = sizeof...(Arguments);

    template <auto member>
    static Value call(NSObject& object, const Value& first, const Value& second)
    {
        static_assert(argumentCount <= 2, "a selector is performed with two objects at most");
        const Value* const given[] = { &first, &second };
        return [&]<std::size_t... i>(std::index_sequence<i...>)->Value
        {
            auto invoke = [&]() -> decltype(auto) {
                return (static_cast<Owner&>(object).*member)(Argument<std::decay_t<Arguments>>::from(*given[i])...);
            };
            if constexpr (std::is_void_v<Result>) {
                invoke();
                return {};
            } else {
                return Value(invoke());
            }
        }
        (std::index_sequence_for<Arguments...>());
    }
};

template <class Owner, class Result, class... Arguments>
Signature<Owner, Result, Arguments...> signatureOf(Result (Owner::*)(Arguments...));
template <class Owner, class Result, class... Arguments>
Signature<const Owner, Result, Arguments...> signatureOf(Result (Owner::*)(Arguments...) const);

}

template <auto member>
Method Method::of(std::string_view name)
{
    using Called = decltype(runtime::signatureOf(member));
    return { selectorFromName(name, Called::argumentCount), &Called::template call<member> };
}
