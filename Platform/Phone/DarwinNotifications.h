#pragma once

#include <functional>
#include <string>

/// Notifications between processes: a name and nothing else.
class DarwinNotifications {
public:
    using Handler = std::function<void(const std::string& name)>;

    virtual ~DarwinNotifications() = default;
    virtual void post(const std::string& name) = 0;
    /// The handler is called on the main thread for every notification of that name, in the order of their posting, for
    /// as long as the service lives.
    virtual void addObserver(const std::string& name, Handler handler) = 0;
};
