#include "Linux/Bus/Bus.h"

#include "Linux/Bus/BusAddress.h"
#include "Linux/Bus/FirstWait.h"

#include <algorithm>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <utility>

namespace {

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";
constexpr const char* ownerSignal = "NameOwnerChanged";
constexpr const char* ownerSignalType = "(sss)";
constexpr gint withoutLimit = G_MAXINT;
constexpr auto connectionFlags = static_cast<GDBusConnectionFlags>(
    G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);

/// An owner of an object; null makes null.
template <typename Object>
std::shared_ptr<Object> owned(Object* object)
{
    return object ? std::shared_ptr<Object>(object, g_object_unref) : nullptr;
}

/// What a call of GIO failed with.
class Failure {
public:
    Failure() = default;
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;
    ~Failure() { g_clear_error(&_error); }

    GError** place() { return &_error; }
    const char* name() const
    {
        if (g_error_matches(_error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
            return BusReply::noReply;
        return g_error_matches(_error, G_IO_ERROR, G_IO_ERROR_CLOSED) ? BusReply::disconnected : BusReply::failed;
    }

private:
    GError* _error = nullptr;
};

const char* textOrNull(const std::string& text)
{
    return text.empty() ? nullptr : text.c_str();
}

std::string textOrEmpty(const char* text)
{
    return text ? text : "";
}

std::shared_ptr<GDBusMessage> messageOf(const BusRequest& request)
{
    auto message = owned(g_dbus_message_new_method_call(
        request.name.c_str(), request.path.c_str(), request.interface.c_str(), request.method.c_str()));
    if (request.autoStart == BusRequest::AutoStart::No)
        g_dbus_message_set_flags(message.get(), G_DBUS_MESSAGE_FLAGS_NO_AUTO_START);
    if (request.arguments)
        g_dbus_message_set_body(message.get(), request.arguments.get());
    if (!request.files.empty()) {
        const auto files = owned(g_unix_fd_list_new());
        for (const int file : request.files)
            g_unix_fd_list_append(files.get(), file, nullptr);
        g_dbus_message_set_unix_fd_list(message.get(), files.get());
    }
    return message;
}

BusReply replyIn(GDBusMessage& message)
{
    BusReply reply;
    reply.sender = textOrEmpty(g_dbus_message_get_sender(&message));
    if (g_dbus_message_get_message_type(&message) == G_DBUS_MESSAGE_TYPE_ERROR)
        reply.error = textOrEmpty(g_dbus_message_get_error_name(&message));
    else if (GVariant* body = g_dbus_message_get_body(&message))
        reply.values = Variant(g_variant_ref(body));
    return reply;
}

/// A bus that is not reached by a local socket carries no files. GIO would give the connection up over a message that
/// has some.
bool canCarry(GDBusConnection& connection, GDBusMessage& message)
{
    const auto capabilities = g_dbus_connection_get_capabilities(&connection);
    return !g_dbus_message_get_unix_fd_list(&message) || (capabilities & G_DBUS_CAPABILITY_FLAGS_UNIX_FD_PASSING) != 0;
}

/// What GIO keeps for a callback, which may come after all that it is about has gone.
template <typename Target>
gpointer weakly(const std::shared_ptr<Target>& target)
{
    return new std::weak_ptr<Target>(target);
}

template <typename Target>
void release(gpointer weak)
{
    delete static_cast<std::weak_ptr<Target>*>(weak);
}

/// Null when the target has gone. For callbacks that come once.
template <typename Target>
std::shared_ptr<Target> taken(gpointer weak)
{
    const std::unique_ptr<std::weak_ptr<Target>> owner(static_cast<std::weak_ptr<Target>*>(weak));
    return owner->lock();
}

std::shared_ptr<std::function<void()>> added(
    std::vector<std::weak_ptr<std::function<void()>>>& observers, std::function<void()> handler)
{
    std::erase_if(observers, [](const auto& observer) { return observer.expired(); });
    auto observer = std::make_shared<std::function<void()>>(std::move(handler));
    observers.push_back(observer);
    return observer;
}

} // namespace

/// A connection that is being made. GIO does that on a thread of its own, which may hang for as long as the bus does.
class Bus::Opening {
public:
    explicit Opening(Bus& bus)
        : _bus(bus)
    {
    }
    Opening(const Opening&) = delete;
    Opening& operator=(const Opening&) = delete;
    ~Opening() { g_cancellable_cancel(_cancellable.get()); }

    static void begin(const std::shared_ptr<Opening>& opening, const std::string& addresses)
    {
        g_dbus_connection_new_for_address(
            addresses.c_str(), connectionFlags, nullptr, opening->_cancellable.get(), end, weakly(opening));
    }

private:
    static void end(GObject* /*source*/, GAsyncResult* result, gpointer weak) noexcept
    {
        auto connection = owned(g_dbus_connection_new_for_address_finish(result, nullptr));
        if (const auto opening = taken<Opening>(weak))
            opening->_bus.opened(std::move(connection));
    }

    Bus& _bus;
    std::shared_ptr<GCancellable> _cancellable = owned(g_cancellable_new());
};

class Bus::Call {
public:
    Call(ReplyHandler handler, gint patience)
        : _handler(std::move(handler))
        , _patience(patience)
    {
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call() { g_cancellable_cancel(_cancellable.get()); }

    static void begin(const std::shared_ptr<Call>& call, GDBusConnection* connection, GDBusMessage* message)
    {
        g_dbus_connection_send_message_with_reply(connection, message, G_DBUS_SEND_MESSAGE_FLAGS_NONE, call->_patience,
            nullptr, call->_cancellable.get(), end, weakly(call));
    }

    static void failLater(const std::shared_ptr<Call>& call, BusContext& context, const char* error)
    {
        call->_failing = context.callLater(std::chrono::milliseconds(0), [weak = std::weak_ptr(call), error] {
            if (const auto failing = weak.lock())
                failing->finish({ {}, error, {} });
        });
    }

private:
    static void end(GObject* connection, GAsyncResult* result, gpointer weak) noexcept
    {
        Failure failure;
        const auto message = owned(
            g_dbus_connection_send_message_with_reply_finish(G_DBUS_CONNECTION(connection), result, failure.place()));
        if (const auto call = taken<Call>(weak))
            call->finish(message ? replyIn(*message) : BusReply { {}, failure.name(), {} });
    }

    void finish(const BusReply& reply)
    {
        // The handler may drop the call.
        const ReplyHandler handler = std::exchange(_handler, nullptr);
        handler(reply);
    }

    ReplyHandler _handler;
    gint _patience;
    BusHandle _failing;
    std::shared_ptr<GCancellable> _cancellable = owned(g_cancellable_new());
};

/// What waits until all that was sent has been written. GIO does that on a thread of its own.
class Bus::Flush {
public:
    explicit Flush(std::function<void()> handler)
        : _handler(std::move(handler))
    {
    }
    Flush(const Flush&) = delete;
    Flush& operator=(const Flush&) = delete;
    ~Flush() { g_cancellable_cancel(_cancellable.get()); }

    static void begin(const std::shared_ptr<Flush>& flush, GDBusConnection* connection)
    {
        g_dbus_connection_flush(connection, flush->_cancellable.get(), end, weakly(flush));
    }

private:
    static void end(GObject* connection, GAsyncResult* result, gpointer weak) noexcept
    {
        g_dbus_connection_flush_finish(G_DBUS_CONNECTION(connection), result, nullptr);
        if (const auto flush = taken<Flush>(weak))
            flush->_handler();
    }

    std::function<void()> _handler;
    std::shared_ptr<GCancellable> _cancellable = owned(g_cancellable_new());
};

class Bus::Subscription {
public:
    Subscription(BusSignalRule rule, SignalHandler handler)
        : _rule(std::move(rule))
        , _handler(std::move(handler))
    {
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription()
    {
        if (const auto connection = _connection.lock())
            g_dbus_connection_signal_unsubscribe(connection.get(), _number);
    }

    static void begin(
        const std::shared_ptr<Subscription>& subscription, const std::shared_ptr<GDBusConnection>& connection)
    {
        const BusSignalRule& rule = subscription->_rule;
        subscription->_connection = connection;
        subscription->_number = g_dbus_connection_signal_subscribe(connection.get(), textOrNull(rule.sender),
            textOrNull(rule.interface), textOrNull(rule.member), textOrNull(rule.path), textOrNull(rule.firstText),
            G_DBUS_SIGNAL_FLAGS_NONE, hear, weakly(subscription), release<Subscription>);
    }

private:
    static void hear(GDBusConnection* /*connection*/, const gchar* sender, const gchar* path, const gchar* interface,
        const gchar* member, GVariant* values, gpointer weak) noexcept
    {
        if (const auto subscription = static_cast<std::weak_ptr<Subscription>*>(weak)->lock()) {
            subscription->_handler({ textOrEmpty(sender), textOrEmpty(path), textOrEmpty(interface),
                textOrEmpty(member), Variant(g_variant_ref(values)) });
        }
    }

    BusSignalRule _rule;
    SignalHandler _handler;
    std::weak_ptr<GDBusConnection> _connection;
    guint _number = 0;
};

BusRequest requestToBus(const char* method, Variant arguments)
{
    return { busName, busPath, busName, method, std::move(arguments), {}, BusRequest::AutoStart::No, {} };
}

Variant BusReply::value(const char* type) const
{
    return values.size() == 1 && values[0].is(type) ? values[0] : Variant();
}

Bus::Bus(std::shared_ptr<BusContext> context, const std::string& addresses)
    : _context(std::move(context))
    , _addresses(socketAddressesOf(addresses))
{
}

Bus::~Bus()
{
    drop();
}

void Bus::open()
{
    if (_state == State::Unused)
        begin();
}

void Bus::reopen()
{
    if (_state == State::Absent)
        begin();
}

void Bus::begin()
{
    if (_addresses.empty()) {
        _state = State::Absent;
        return;
    }
    _state = State::Opening;
    _openingEnd = BusContext::Clock::now() + FirstWait::longest;
    const BusContext::Scope scope(*_context);
    _opening = std::make_shared<Opening>(*this);
    Opening::begin(_opening, _addresses);
}

void Bus::opened(std::shared_ptr<GDBusConnection> connection)
{
    _opening = nullptr;
    _connection = std::move(connection);
    _state = _connection ? State::Connected : State::Absent;
    if (_connection) {
        const BusContext::Scope scope(*_context);
        g_signal_connect(_connection.get(), "closed", G_CALLBACK(closed), this);
        std::erase_if(_subscriptions, [](const auto& subscription) { return subscription.expired(); });
        for (const auto& weak : _subscriptions) {
            if (const auto subscription = weak.lock())
                Subscription::begin(subscription, _connection);
        }
        notify(_connectedObservers);
    }
    for (const Outgoing& outgoing : std::exchange(_outbox, {}))
        sendNow(outgoing);
}

void Bus::closed(GDBusConnection* /*connection*/, gboolean /*isVanished*/, void* /*error*/, void* bus) noexcept
{
    auto& self = *static_cast<Bus*>(bus);
    self.drop();
    self._state = State::Absent;
    notify(self._lostObservers);
}

void Bus::drop()
{
    if (_connection)
        g_signal_handlers_disconnect_by_data(_connection.get(), this);
    _connection = nullptr;
}

void Bus::notify(const Observers& observers)
{
    // They may add some.
    for (const auto& weak : Observers(observers)) {
        if (const auto observer = weak.lock())
            (*observer)();
    }
}

BusHandle Bus::call(const BusRequest& request, ReplyHandler handler)
{
    const auto patience = request.patience ? static_cast<gint>(request.patience->count()) : withoutLimit;
    const auto call = std::make_shared<Call>(std::move(handler), patience);
    send({ messageOf(request), call });
    return call;
}

void Bus::sendSignal(const std::string& path, const std::string& interface, const std::string& member, Variant values)
{
    const auto message = owned(g_dbus_message_new_signal(path.c_str(), interface.c_str(), member.c_str()));
    g_dbus_message_set_body(message.get(), values.get());
    send({ message, std::nullopt });
}

void Bus::send(const Outgoing& outgoing)
{
    open();
    if (isOpening())
        _outbox.push_back(outgoing);
    else
        sendNow(outgoing);
}

void Bus::sendNow(const Outgoing& outgoing)
{
    const BusContext::Scope scope(*_context);
    const auto call = outgoing.call ? outgoing.call->lock() : nullptr;
    if (call && !_connection)
        Call::failLater(call, *_context, BusReply::disconnected);
    else if (call && !canCarry(*_connection, *outgoing.message))
        Call::failLater(call, *_context, BusReply::failed);
    else if (call)
        Call::begin(call, _connection.get(), outgoing.message.get());
    else if (!outgoing.call && _connection)
        g_dbus_connection_send_message(
            _connection.get(), outgoing.message.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
}

std::string Bus::ownName() const
{
    return _connection ? textOrEmpty(g_dbus_connection_get_unique_name(_connection.get())) : "";
}

BusHandle Bus::whenSent(std::function<void()> handler)
{
    const BusContext::Scope scope(*_context);
    const auto flush = std::make_shared<Flush>(std::move(handler));
    Flush::begin(flush, _connection.get());
    return flush;
}

BusHandle Bus::subscribe(BusSignalRule rule, SignalHandler handler)
{
    const BusContext::Scope scope(*_context);
    const auto subscription = std::make_shared<Subscription>(std::move(rule), std::move(handler));
    std::erase_if(_subscriptions, [](const auto& other) { return other.expired(); });
    _subscriptions.push_back(subscription);
    if (_connection)
        Subscription::begin(subscription, _connection);
    return subscription;
}

BusHandle Bus::watchOwner(const std::string& name, OwnerHandler handler)
{
    const BusSignalRule rule { busName, busPath, busName, ownerSignal, name };
    const auto changed = [handler](const BusSignal& heard) {
        if (heard.values.is(ownerSignalType))
            handler(*heard.values[2].text());
    };
    return std::make_shared<std::pair<BusHandle, BusHandle>>(
        subscribe(rule, changed), whenLost([handler] { handler({}); }));
}

BusHandle Bus::whenConnected(std::function<void()> handler)
{
    return added(_connectedObservers, std::move(handler));
}

BusHandle Bus::whenLost(std::function<void()> handler)
{
    return added(_lostObservers, std::move(handler));
}
