#pragma once

#include "Linux/Bus/Bus.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

struct _GDBusMethodInvocation;

/// A daemon in the process of the test, which answers while the test's context handles what comes. It has an object
/// manager at "/" whose objects the test states.
class TestDaemon {
public:
    static constexpr const char* name = "org.example.Daemon";

    TestDaemon(const BusContext& context, const std::string& address, const char* ownName = name);
    TestDaemon(const TestDaemon&) = delete;
    TestDaemon& operator=(const TestDaemon&) = delete;
    /// The name loses its owner.
    ~TestDaemon();

    /// What it answers when it is asked for its objects: the text form of a value.
    void setObjects(std::string objects) { _objects = std::move(objects); }
    /// From now on it keeps who asks waiting, or no longer, with an answer to those who wait.
    void setBusy(bool busy);
    /// How often it has been asked for its objects.
    int questions() const { return _questions; }
    /// The text form of a tuple.
    void sendSignal(const std::string& path, const std::string& interface, const std::string& member,
        const std::string& values) const;

private:
    void answer(_GDBusMethodInvocation* invocation);
    void reply(_GDBusMethodInvocation* invocation) const;

    std::shared_ptr<struct _GDBusConnection> _connection;
    std::string _objects = "@a{oa{sa{sv}}} {}";
    std::vector<_GDBusMethodInvocation*> _waiting;
    bool _isBusy = false;
    int _questions = 0;
};

/// A value from its text form.
Variant parsed(const std::string& text);
