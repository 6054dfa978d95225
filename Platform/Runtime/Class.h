#pragma once

#include "Runtime/Boxing.h"
#include "Runtime/Value.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <vector>

/// The selector of a C++ name: a `_` for each inner colon, the last one dropped.
/// `updateSettingsDict_forKey` with two arguments is `updateSettingsDict:forKey:`.
std::string selectorFromName(std::string_view name, std::size_t argumentCount);

/// A method that can be reached by its selector. Two arguments are passed at most; those after them arrive as null,
/// zero or empty, and so does one that the caller gives in another type.
struct Method {
    using Function = Value (*)(NSObject&, const Value&, const Value&);

    std::string selector;
    Function function;

    /// The method of a member function, or of a function of the class, which its instances answer too.
    template <auto function>
    static Method of(std::string_view name);
    /// The method of an initialiser: its result is the object, or null when that could not be made.
    template <auto function>
    static Method ofInitializer(std::string_view name);
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

inline const Value absentArgument;

/// Calls a function with arguments from values. A function of a class has no Owner: `void`.
template <class Owner, class Result, class... Arguments>
struct Signature {
    static constexpr std::size_t argumentCount = sizeof...(Arguments);

    template <auto function>
    static Value call(NSObject& object, const Value& first, const Value& second)
    {
        return callWith<function>(object, { &first, &second }, std::index_sequence_for<Arguments...>());
    }

private:
    struct Given {
        const Value* first;
        const Value* second;

        const Value& at(std::size_t i) const { return i == 0 ? *first : i == 1 ? *second : absentArgument; }
    };

    template <auto function, std::size_t... i>
    static Value callWith(NSObject& object, [[maybe_unused]] const Given& given, std::index_sequence<i...>)
    {
        std::tuple<boxing::Parameter<Arguments>...> parameters { boxing::Parameter<Arguments>(given.at(i))... };
        if (!(std::get<i>(parameters).isThere() && ...))
            return {};
        const auto invoke = [&]() -> decltype(auto) {
            if constexpr (std::is_void_v<Owner>)
                return function(std::get<i>(parameters).get()...);
            else
                return (static_cast<Owner&>(object).*function)(std::get<i>(parameters).get()...);
        };
        if constexpr (std::is_void_v<Result>) {
            invoke();
            return {};
        } else {
            return boxing::boxed(invoke());
        }
    }
};

template <class Owner, class Result, class... Arguments>
Signature<Owner, Result, Arguments...> signatureOf(Result (Owner::*)(Arguments...));
template <class Owner, class Result, class... Arguments>
Signature<const Owner, Result, Arguments...> signatureOf(Result (Owner::*)(Arguments...) const);
template <class Result, class... Arguments>
Signature<void, Result, Arguments...> signatureOf(Result (*)(Arguments...));

}

template <auto function>
Method Method::of(std::string_view name)
{
    using Called = decltype(runtime::signatureOf(function));
    return { selectorFromName(name, Called::argumentCount), &Called::template call<function> };
}

template <auto function>
Method Method::ofInitializer(std::string_view name)
{
    using Called = decltype(runtime::signatureOf(function));
    return { selectorFromName(name, Called::argumentCount),
        [](NSObject& object, const Value& first, const Value& second) {
            return Called::template call<function>(object, first, second).boolValue() ? boxing::boxed(object) : Value();
        } };
}
