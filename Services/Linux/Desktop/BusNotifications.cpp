#include "Linux/Desktop/BusNotifications.h"

#include "Linux/Bus/FirstWait.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr const char* path = "/com/vexil/DarwinNotifications";
constexpr const char* interface = "com.vexil.DarwinNotifications";
constexpr const char* signalName = "Posted";
constexpr const char* signalType = "(s)";

/// Each process has a name of its own, made of the one that the bus gave its connection, as several post at once and
/// only one could own a common one. The bus of a sandbox tells by these names whose signals it lets through.
constexpr const char* posterNames = "com.vexil.Tandem.Notifications.c";
constexpr std::uint32_t withoutQueue = 4;

constexpr std::string_view plainSigns = "._+-";
constexpr std::size_t longestPlainName = 255;

bool isPlain(char character)
{
    const bool isDigit = character >= '0' && character <= '9';
    const bool isUpper = character >= 'A' && character <= 'Z';
    const bool isLower = character >= 'a' && character <= 'z';
    return isDigit || isUpper || isLower || plainSigns.find(character) != std::string_view::npos;
}

/// Whether it can stand in a match rule as it is, and is short enough for one.
bool canBeSelected(const std::string& name)
{
    return !name.empty() && name.size() <= longestPlainName && std::ranges::all_of(name, isPlain);
}

/// For the connection ":1.42", what ends in "c1_42".
std::string posterName(std::string connection)
{
    connection.erase(0, 1);
    std::ranges::replace(connection, '.', '_');
    return posterNames + connection;
}

} // namespace

BusNotifications::BusNotifications(std::shared_ptr<Bus> sessionBus)
    : _bus(std::move(sessionBus))
{
    // Before what is kept for the connection leaves.
    _connected = _bus->whenConnected([this] {
        if (_isPoster)
            claimName();
    });
}

void BusNotifications::claimName()
{
    const Variant arguments =
        Variant::ofTuple({ Variant::ofText(posterName(_bus->ownName())), Variant::ofUnsigned(withoutQueue) });
    // A sandbox may refuse the name; the signals are sent all the same.
    _claim = _bus->call(requestToBus("RequestName", arguments), [](const BusReply&) {});
}

void BusNotifications::post(const std::string& name)
{
    if (!std::exchange(_isPoster, true) && _bus->isConnected())
        claimName();
    _bus->sendSignal(path, interface, signalName, Variant::ofTuple({ Variant::ofText(name) }));
    _isFlushed = false;
}

void BusNotifications::addObserver(const std::string& name, Handler handler)
{
    if (!handler)
        return;
    if (canBeSelected(name)) {
        observe(name, std::move(handler));
        return;
    }
    observe({}, [name, handler = std::move(handler)](const std::string& posted) {
        if (posted == name)
            handler(posted);
    });
}

void BusNotifications::observe(const std::string& selected, Handler handler)
{
    if (!handler)
        return;
    _bus->open();
    _subscriptions.push_back(_bus->subscribe({ {}, path, interface, signalName, selected },
        [this, shared = std::make_shared<const Handler>(std::move(handler))](
            const BusSignal& heard) { receive(shared, heard); }));
}

void BusNotifications::flush()
{
    if (std::exchange(_isFlushed, true))
        return;
    BusContext& context = _bus->context();
    context.waitUntil([this] { return !_bus->isOpening(); }, _bus->openingEnd());
    if (!_bus->isConnected())
        return;
    bool isSent = false;
    const auto sending = _bus->whenSent([&isSent] { isSent = true; });
    context.waitUntil([&isSent] { return isSent; }, BusContext::Clock::now() + FirstWait::longest);
}

void BusNotifications::receive(const SharedHandler& handler, const BusSignal& heard)
{
    if (!heard.values.is(signalType))
        return;
    _received.emplace_back(handler, *heard.values[0].text());
    if (!_news)
        _news = _bus->context().tell([this] { deliver(); });
}

void BusNotifications::deliver()
{
    _news = nullptr;
    for (const auto& [handler, name] : std::exchange(_received, {}))
        (*handler)(name);
}
