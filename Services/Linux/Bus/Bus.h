#pragma once

#include "Linux/Bus/BusContext.h"
#include "Linux/Bus/Variant.h"

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct _GDBusConnection;
struct _GDBusMessage;

/// A call of a method of a daemon.
struct BusRequest {
    enum class AutoStart { No, Yes };

    std::string name;
    std::string path;
    std::string interface;
    std::string method;
    /// A tuple; nothing for a method without arguments.
    Variant arguments;
    /// Open files, which arguments of the type "h" refer to by their places. They are duplicated. A bus that carries no
    /// files lets the request fail.
    std::vector<int> files;
    /// Whether the bus is to start a daemon that is not running.
    AutoStart autoStart = AutoStart::No;
    /// How long to wait for the reply once the request has been sent; without it, as long as the daemon lives.
    std::optional<std::chrono::milliseconds> patience;
};

/// A request to the bus itself, as "GetNameOwner".
BusRequest requestToBus(const char* method, Variant arguments);

/// What a request came to.
struct BusReply {
    static constexpr const char* noReply = "org.freedesktop.DBus.Error.NoReply";
    static constexpr const char* disconnected = "org.freedesktop.DBus.Error.Disconnected";
    static constexpr const char* failed = "org.freedesktop.DBus.Error.Failed";

    /// A tuple; nothing when the request has failed.
    Variant values;
    /// The name of the error; empty when the request has not failed. It is `noReply` when the time was up, and
    /// `disconnected` when the bus went away or is not there.
    std::string error;
    /// The connection that replied; empty when none did.
    std::string sender;

    /// The one value of a reply that has one of this type, as "a{sv}"; nothing otherwise.
    Variant value(const char* type) const;
};

struct BusSignal {
    std::string sender;
    std::string path;
    std::string interface;
    std::string member;
    /// A tuple.
    Variant values;
};

/// Which signals are wanted; an empty field admits all.
struct BusSignalRule {
    /// A connection, or the name of a daemon.
    std::string sender;
    std::string path;
    std::string interface;
    std::string member;
    /// What the first value is, which must be a text then.
    std::string firstText;
};

/// A connection to a bus. It is made in the background, and again in a later turn after the bus was not there or went
/// away; nothing here ever waits. All handlers are called on the context, and never by the operation that takes them.
class Bus {
public:
    using ReplyHandler = std::function<void(const BusReply&)>;
    using SignalHandler = std::function<void(const BusSignal&)>;
    /// The connection that owns the name now; empty for none.
    using OwnerHandler = std::function<void(const std::string&)>;

    /// Where none of the addresses is that of a socket, there is no bus.
    Bus(std::shared_ptr<BusContext> context, const std::string& addresses);
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;
    ~Bus();

    BusContext& context() const { return *_context; }

    /// Begins to connect when that has not been tried yet. Called by all that needs the bus.
    void open();
    /// Begins to connect again to a bus that was needed and is not there. Called once a turn.
    void reopen();
    /// Whether it is not known yet if the bus is there. This may take any time where a bus hangs.
    bool isOpening() const { return _state == State::Opening; }
    bool isConnected() const { return _connection != nullptr; }
    /// From then on a bus that is still being opened is taken for one that hangs.
    BusContext::Clock::time_point openingEnd() const { return _openingEnd; }
    /// The name that the bus gave the connection; empty while there is none.
    std::string ownName() const;

    /// Sends the request, or keeps it until the bus has been opened. Dropping the handle gives the reply up.
    [[nodiscard]] BusHandle call(const BusRequest& request, ReplyHandler handler);
    /// Sends a signal to whoever listens, or keeps it until the bus has been opened; it is lost when there is no bus.
    void sendSignal(const std::string& path, const std::string& interface, const std::string& member, Variant values);
    /// Hears when all that was given to the connection has left the process, or is lost. There must be a connection.
    [[nodiscard]] BusHandle whenSent(std::function<void()> handler);
    /// Hears signals, on every later connection too.
    [[nodiscard]] BusHandle subscribe(BusSignalRule rule, SignalHandler handler);
    /// Hears of changes of the owner of a daemon's name. A bus that goes away leaves the name without one.
    [[nodiscard]] BusHandle watchOwner(const std::string& name, OwnerHandler handler);
    /// Hears of each connection that is made from now on; what was subscribed to has been asked for then.
    [[nodiscard]] BusHandle whenConnected(std::function<void()> handler);
    /// Hears of each connection that goes away.
    [[nodiscard]] BusHandle whenLost(std::function<void()> handler);

private:
    class Opening;
    class Call;
    class Flush;
    class Subscription;
    using Observers = std::vector<std::weak_ptr<std::function<void()>>>;

    enum class State { Unused, Opening, Connected, Absent };

    /// What waits for the bus. A signal belongs to no call.
    struct Outgoing {
        std::shared_ptr<_GDBusMessage> message;
        std::optional<std::weak_ptr<Call>> call;
    };

    void begin();
    void opened(std::shared_ptr<_GDBusConnection> connection);
    static void closed(_GDBusConnection* connection, int isVanished, void* error, void* bus) noexcept;
    void drop();
    void send(const Outgoing& outgoing);
    void sendNow(const Outgoing& outgoing);
    static void notify(const Observers& observers);

    std::shared_ptr<BusContext> _context;
    std::string _addresses;
    State _state = State::Unused;
    BusContext::Clock::time_point _openingEnd;
    std::shared_ptr<Opening> _opening;
    std::shared_ptr<_GDBusConnection> _connection;
    std::vector<Outgoing> _outbox;
    std::list<std::weak_ptr<Subscription>> _subscriptions;
    Observers _connectedObservers;
    Observers _lostObservers;
};
