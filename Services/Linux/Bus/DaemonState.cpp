#include "Linux/Bus/DaemonState.h"

#include <algorithm>

DaemonState::DaemonState(std::shared_ptr<Bus> bus, std::string daemon, std::shared_ptr<FirstWait> group)
    : _bus(std::move(bus))
    , _daemon(std::move(daemon))
    , _group(std::move(group))
{
    _group->add(*this);
}

DaemonState::~DaemonState()
{
    _group->remove(*this);
}

const BusObjects& DaemonState::objects()
{
    if (!_isAsked)
        _group->askAll();
    return _objects;
}

bool DaemonState::isAwaited() const
{
    const bool isUnderWay = _bus->isOpening() || !_requests.empty();
    return _isAsked && isUnderWay && BusContext::Clock::now() < _end;
}

void DaemonState::ask()
{
    if (_isAsked)
        return;
    _isAsked = true;
    _subscriptions.push_back(_bus->whenConnected([this] { begin(); }));
    _subscriptions.push_back(_bus->watchOwner(_daemon, [this](const std::string& owner) { ownerChanged(owner); }));
    listen();
    _end = BusContext::Clock::now() + FirstWait::longest;
    _bus->open();
    if (_bus->isConnected())
        begin();
}

void DaemonState::begin()
{
    // One that is late has come back since.
    const auto now = BusContext::Clock::now();
    if (now >= _end)
        _end = now + FirstWait::longest;
    request();
}

void DaemonState::ownerChanged(const std::string& owner)
{
    forget();
    if (!owner.empty())
        begin();
}

void DaemonState::forget()
{
    _requests.clear();
    if (_objects.empty())
        return;
    _objects.clear();
    noteChange();
}

void DaemonState::hear(const std::string& path, const char* interface, const char* member, Bus::SignalHandler handler)
{
    _subscriptions.push_back(_bus->subscribe({ _daemon, path, interface, member, {} }, std::move(handler)));
}

void DaemonState::askFor(
    const std::string& path, const char* interface, const char* method, Variant arguments, Bus::ReplyHandler handler)
{
    BusRequest request;
    request.name = _daemon;
    request.path = path;
    request.interface = interface;
    request.method = method;
    request.arguments = std::move(arguments);
    const auto place = _requests.insert(_requests.end(), nullptr);
    *place = _bus->call(request, [this, place, handler = std::move(handler)](const BusReply& reply) {
        _requests.erase(place);
        handler(reply);
    });
}

void DaemonState::noteChange()
{
    if (_news)
        return;
    _news = _bus->context().tell([this] {
        _news = nullptr;
        if (_observer)
            _observer();
    });
}
