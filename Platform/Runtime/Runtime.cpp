#include "Runtime/Class.h"
#include "Runtime/NSObject.h"

namespace {

using Registry = std::unordered_map<std::string_view, const Class*>;

Registry& registry()
{
    static Registry classes;
    return classes;
}

} // namespace

std::string selectorFromName(std::string_view name, std::size_t argumentCount)
{
    std::string selector(name);
    if (argumentCount == 0)
        return selector;
    // Counted from the end, because names such as vx__indexByIdentifier begin with underscores of their own.
    std::size_t end = selector.size();
    for (std::size_t colons = 1; colons < argumentCount; ++colons) {
        const std::size_t underscore = selector.rfind('_', end - 1);
        if (underscore == std::string::npos || underscore == 0)
            break;
        selector[underscore] = ':';
        end = underscore;
    }
    selector += ':';
    return selector;
}

Class::Class(std::string name, const Class* superclass, Maker maker, std::initializer_list<Method> methods)
    : _name(std::move(name))
    , _superclass(superclass)
    , _maker(maker)
    , _methods(methods)
{
    for (const Method& method : _methods)
        _bySelector.emplace(method.selector, &method);
    registry().emplace(_name, this);
}

bool Class::isSubclassOf(const Class& other) const
{
    for (const Class* cls = this; cls; cls = cls->_superclass) {
        if (cls == &other)
            return true;
    }
    return false;
}

const Method* Class::methodFor(std::string_view selector) const
{
    for (const Class* cls = this; cls; cls = cls->_superclass) {
        if (const auto found = cls->_bySelector.find(selector); found != cls->_bySelector.end())
            return found->second;
    }
    return nullptr;
}

const Class* NSClassFromString(std::string_view name)
{
    const auto found = registry().find(name);
    return found == registry().end() ? nullptr : found->second;
}

NSObject::~NSObject() = default;

const Class& NSObject::classObject()
{
    static const Class cls("NSObject", nullptr, nullptr, {});
    return cls;
}

bool NSObject::isKindOfClass(const Class* cls) const
{
    return cls && isa().isSubclassOf(*cls);
}

bool NSObject::isMemberOfClass(const Class* cls) const
{
    return cls == &isa();
}

bool NSObject::respondsToSelector(std::string_view selector) const
{
    return isa().instancesRespondToSelector(selector);
}

Value NSObject::performSelector(std::string_view selector, const Value& first, const Value& second)
{
    const Method* method = isa().methodFor(selector);
    return method ? method->function(*this, first, second) : Value();
}

std::string NSObject::description() const
{
    return "<" + isa().name() + ">";
}
