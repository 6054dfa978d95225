#pragma once

#include "Linux/Bus/Bus.h"
#include "Linux/Bus/FirstWait.h"

#include <functional>
#include <list>
#include <memory>
#include <string>

/// What a daemon has told about its objects: asked for when it is first needed, and then kept current by signals. It is
/// empty while there is no bus or no daemon, and until the daemon answers; a daemon that comes back is asked again.
///
/// Derived classes know what to ask and what to listen to. Of ObjectCache, for daemons with an object manager, there
/// are further ones for what a daemon does not put into that; tests have their own.
class DaemonState {
public:
    /// All states of the group are asked together.
    DaemonState(std::shared_ptr<Bus> bus, std::string daemon, std::shared_ptr<FirstWait> group);
    DaemonState(const DaemonState&) = delete;
    DaemonState& operator=(const DaemonState&) = delete;
    virtual ~DaemonState();

    /// The objects as they are known now. Asks for them when nobody has yet.
    const BusObjects& objects();
    /// Called in the next `takeIn` after something has changed.
    void setObserver(std::function<void()> observer) { _observer = std::move(observer); }

    /// Whether the daemon may still answer in time.
    bool isAwaited() const;
    /// When it is too late for that.
    BusContext::Clock::time_point end() const { return _end; }
    /// Asks when nobody has yet.
    void ask();

protected:
    const std::string& daemon() const { return _daemon; }
    /// Called once, before anything is asked.
    virtual void listen() = 0;
    /// Sends the first requests to a daemon that may be another than before.
    virtual void request() = 0;

    /// Hears signals of the daemon; those that come before its answer are part of it.
    void hear(const std::string& path, const char* interface, const char* member, Bus::SignalHandler handler);
    /// Sends a request whose reply the state awaits. The reply is not heard when the daemon goes before it answers.
    void askFor(const std::string& path, const char* interface, const char* method, Variant arguments,
        Bus::ReplyHandler handler);
    BusObjects& known() { return _objects; }
    /// To be called after a change of what is known.
    void noteChange();

private:
    void begin();
    void ownerChanged(const std::string& owner);
    void forget();

    std::shared_ptr<Bus> _bus;
    std::string _daemon;
    std::shared_ptr<FirstWait> _group;
    std::function<void()> _observer;
    BusObjects _objects;
    bool _isAsked = false;
    BusContext::Clock::time_point _end;
    /// Those that are under way, each of which goes when it has been answered.
    std::list<BusHandle> _requests;
    std::vector<BusHandle> _subscriptions;
    BusHandle _news;
};
