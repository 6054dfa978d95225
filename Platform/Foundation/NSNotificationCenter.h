#pragma once

#include "Runtime/NSObject.h"

#include <string>
#include <vector>

/// A notification inside the process: its name, who sent it and what came with it.
class NSNotification final : public NSObject {
    NS_CLASS(NSNotification, NSObject)
public:
    NSNotification() = default;
    NSNotification(std::string name, Value object, Value userInfo)
        : _name(std::move(name))
        , _object(std::move(object))
        , _userInfo(std::move(userInfo))
    {
    }

    const std::string& name() const { return _name; }
    const Value& object() const { return _object; }
    const Value& userInfo() const { return _userInfo; }

private:
    std::string _name;
    Value _object;
    Value _userInfo;
};

/// Notifications inside the process, delivered while they are posted, in the order of registration.
/// Observers are held weakly: one that is gone or removed hears nothing more, even of what is being posted.
class NSNotificationCenter final : public NSObject {
    NS_CLASS(NSNotificationCenter, NSObject)
public:
    static NSNotificationCenter& defaultCenter();

    /// The observer performs the selector with the notification, whoever posts it.
    void addObserver_selector_name(
        const std::shared_ptr<NSObject>& observer, const std::string& selector, const std::string& name);
    void removeObserver(const NSObject& observer);
    void postNotificationName(const std::string& name, const Value& object = {}, const Value& userInfo = {});

private:
    struct Registration {
        std::weak_ptr<NSObject> observer;
        std::string selector;
        std::string name;
    };

    std::vector<std::shared_ptr<const Registration>> _registrations;
};
