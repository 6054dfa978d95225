#pragma once

#include "Linux/Bus/Bus.h"

#include <memory>
#include <string>
#include <vector>

struct _GDBusConnection;
struct _GDBusMethodInvocation;

/// A settings portal in the process of the test, which answers while the test's context handles what comes.
class TestPortal {
public:
    /// Those settings are the text form of what the portal answers. It is the desktop's portal at once.
    TestPortal(const BusContext& context, const std::string& address, const std::string& settings);
    TestPortal(const TestPortal&) = delete;
    TestPortal& operator=(const TestPortal&) = delete;
    /// The desktop has no portal any more.
    ~TestPortal();

    /// The user changes a setting; the value is in its text form. Answers that are kept back know nothing of it.
    void change(const std::string& group, const std::string& key, const std::string& value);
    /// From now on it keeps who asks waiting, or no longer, with an answer to those who wait.
    void setBusy(bool busy);
    /// How often it has been asked for the settings.
    int questions() const { return _questions; }

private:
    void answer(_GDBusMethodInvocation* invocation);

    std::shared_ptr<_GDBusConnection> _connection;
    Variant _settings;
    std::vector<_GDBusMethodInvocation*> _waiting;
    bool _isBusy = false;
    int _questions = 0;
};
