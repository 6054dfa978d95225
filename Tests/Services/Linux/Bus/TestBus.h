#pragma once

#include "Linux/Bus/Bus.h"
#include "TemporaryDirectory.h"

#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>

/// A bus of the test's own, a dbus-daemon that starts no services.
class TestBus {
public:
    TestBus() { start(); }
    TestBus(const TestBus&) = delete;
    TestBus& operator=(const TestBus&) = delete;
    ~TestBus() { kill(); }

    const std::string& address() const { return _address; }
    /// The bus dies with all its connections.
    void kill();
    /// A dead one comes back at the same address.
    void start();
    /// It hangs until it is woken.
    void hang();
    void wake();

private:
    TemporaryDirectory _folder;
    std::string _address = "unix:path=" + _folder.path("bus");
    pid_t _daemon = -1;
};

/// A socket at which nobody says anything, in place of a bus.
class SilentBus {
public:
    SilentBus();
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;
    ~SilentBus();

    const std::string& address() const { return _address; }
    /// Whoever waits there is turned away, and nobody listens any more.
    void turnAway();

private:
    TemporaryDirectory _folder;
    std::string _address = "unix:path=" + _folder.path("bus");
    int _listener;
};

/// Handles what comes, as an event loop of another kind does, until that is so; false when it does not become so within
/// a minute.
bool comesTrue(BusContext& context, const std::function<bool()>& isSo);
