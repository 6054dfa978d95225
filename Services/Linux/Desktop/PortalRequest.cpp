#include "Linux/Desktop/PortalRequest.h"

#include "Linux/Desktop/Portal.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr const char* handleType = "o";
constexpr const char* responseType = "(ua{sv})";
constexpr std::int64_t responseDone = 0;
constexpr std::int64_t responseCancelled = 1;
/// The bus gives a portal that is to be started about as long.
constexpr std::chrono::seconds startPatience { 30 };
/// The user may be asked which program it shall be.
constexpr std::chrono::minutes userPatience { 10 };

PortalOutcome outcomeOf(const BusSignal& response)
{
    if (!response.values.is(responseType))
        return PortalOutcome::Unknown;
    const auto number = response.values[0].number();
    if (number == responseDone)
        return PortalOutcome::Done;
    return number == responseCancelled ? PortalOutcome::Cancelled : PortalOutcome::Refused;
}

/// A portal that does not answer in time, or dies over it, may have done it all the same.
PortalOutcome outcomeOf(const std::string& error)
{
    const bool isUnknown = error == BusReply::noReply || error == BusReply::disconnected;
    return isUnknown ? PortalOutcome::Unknown : PortalOutcome::Refused;
}

} // namespace

PortalRequest::PortalRequest(std::shared_ptr<Bus> sessionBus, BusRequest request, Handler handler)
    : _bus(std::move(sessionBus))
    , _handler(std::move(handler))
{
    _connected = _bus->whenConnected([this] { noteSent(); });
    // From now on and from all requests, because the response may be there before the request has a name.
    _response = _bus->subscribe({ portalName, {}, requestInterface, "Response", {} },
        [this](const BusSignal& response) { takeResponse(response); });
    _owner = _bus->watchOwner(portalName, [this](const std::string& owner) { ownerChanged(owner); });
    request.patience = startPatience;
    _reply = _bus->call(request, [this](const BusReply& reply) { takeReply(reply); });
    if (_bus->isConnected()) {
        noteSent();
        return;
    }
    const auto left = std::chrono::ceil<Milliseconds>(_bus->openingEnd() - BusContext::Clock::now());
    _alarm = _bus->context().callLater(std::max(left, Milliseconds(0)), [this] { finish(PortalOutcome::Refused); });
}

void PortalRequest::noteSent()
{
    _isSent = true;
    _alarm = nullptr;
}

void PortalRequest::takeReply(const BusReply& reply)
{
    const auto path = reply.value(handleType).path();
    if (!reply.error.empty()) {
        finish(_isSent ? outcomeOf(reply.error) : PortalOutcome::Refused);
    } else if (!path) {
        finish(PortalOutcome::Unknown);
    } else if (const auto response = _responses.find(*path); response != _responses.end()) {
        finish(response->second);
    } else {
        _portal = reply.sender;
        _path = *path;
        _alarm = _bus->context().callLater(userPatience, [this] { finish(PortalOutcome::Unknown); });
    }
}

void PortalRequest::takeResponse(const BusSignal& response)
{
    const PortalOutcome outcome = outcomeOf(response);
    _responses.insert_or_assign(response.path, outcome);
    if (response.path == _path)
        finish(outcome);
}

void PortalRequest::ownerChanged(const std::string& owner)
{
    if (!_path.empty() && owner != _portal)
        finish(PortalOutcome::Unknown);
}

void PortalRequest::finish(PortalOutcome outcome)
{
    // The handler may drop the request.
    if (const Handler handler = std::exchange(_handler, nullptr))
        handler(outcome);
}
