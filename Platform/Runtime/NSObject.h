#pragma once

#include "Runtime/Class.h"
#include "Runtime/Value.h"

#include <memory>
#include <string>
#include <string_view>

/// The root of every class that the runtime knows: asked for its class, for what it responds to, and to perform a
/// selector. Objects live in std::shared_ptr only.
class NSObject : public std::enable_shared_from_this<NSObject> {
public:
    using Self = NSObject;

    NSObject() = default;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
    virtual ~NSObject();

    static const Class& classObject();
    /// The class that the object was made of.
    virtual const Class& isa() const { return classObject(); }

    /// Of that class or of one below it; a null class has no instances.
    bool isKindOfClass(const Class* cls) const;
    /// Of exactly that class.
    bool isMemberOfClass(const Class* cls) const;

    bool respondsToSelector(std::string_view selector) const;
    /// The result, null for a selector without one. A selector that the object does not respond to does nothing and
    /// gives null.
    Value performSelector(std::string_view selector, const Value& first = {}, const Value& second = {});

    /// What "%@" prints: by default the class name in angle brackets.
    virtual std::string description() const;
};

/// Stands first in the body of a class that the runtime knows.
#define NS_CLASS(Name, Base)                                                                                           \
public:                                                                                                                \
    using Self = Name;                                                                                                 \
    using Super = Base;                                                                                                \
    static const Class& classObject();                                                                                 \
    const Class& isa() const override                                                                                  \
    {                                                                                                                  \
        return classObject();                                                                                          \
    }                                                                                                                  \
    std::shared_ptr<Name> self()                                                                                       \
    {                                                                                                                  \
        return std::static_pointer_cast<Name>(shared_from_this());                                                     \
    }

/// Stands once in the source file of the class and names its methods that are reached by selector, each as
/// NS_METHOD(name) or NS_INITIALIZER(name).
#define NS_IMPLEMENTATION(Name, ...)                                                                                   \
    const Class& Name::classObject()                                                                                   \
    {                                                                                                                  \
        using Self [[maybe_unused]] = Name;                                                                            \
        static const Class cls(#Name, &Name::Super::classObject(), Class::makerOf<Name>(), { __VA_ARGS__ });           \
        return cls;                                                                                                    \
    }                                                                                                                  \
    namespace {                                                                                                        \
    [[maybe_unused]] const Class& registered##Name = Name::classObject();                                              \
    }

#define NS_METHOD(name) Method::of<&Self::name>(#name)
/// For a method that gives false when the object could not be made.
#define NS_INITIALIZER(name) Method::ofInitializer<&Self::name>(#name)
