#include "Foundation/NSNotificationCenter.h"

#include <algorithm>

NS_IMPLEMENTATION(NSNotification)
NS_IMPLEMENTATION(NSNotificationCenter)

NSNotificationCenter& NSNotificationCenter::defaultCenter()
{
    static const auto center = std::make_shared<NSNotificationCenter>();
    return *center;
}

void NSNotificationCenter::addObserver_selector_name(
    const std::shared_ptr<NSObject>& observer, const std::string& selector, const std::string& name)
{
    std::erase_if(_registrations, [](const auto& known) { return known->observer.expired(); });
    _registrations.push_back(std::make_shared<const Registration>(Registration { observer, selector, name }));
}

void NSNotificationCenter::removeObserver(const NSObject& observer)
{
    std::erase_if(_registrations, [&](const auto& known) { return known->observer.lock().get() == &observer; });
}

void NSNotificationCenter::postNotificationName(const std::string& name, const Value& object, const Value& userInfo)
{
    const Value notification(std::make_shared<NSNotification>(name, object, userInfo));
    // A copy, because an observer may register or remove observers while it is told.
    const auto registrations = _registrations;
    for (const auto& registration : registrations) {
        if (registration->name != name || std::ranges::find(_registrations, registration) == _registrations.end())
            continue;
        if (const auto observer = registration->observer.lock())
            observer->performSelector(registration->selector, notification);
    }
}
