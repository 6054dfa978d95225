#pragma once

#include "Linux/Bus/Bus.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

/// What became of something that a portal was asked to do for the user.
enum class PortalOutcome {
    Done,
    /// The user does not want it after all.
    Cancelled,
    /// The portal is not there, refused or failed: it has done nothing.
    Refused,
    /// The portal has not told, and may still do it.
    Unknown,
};

/// A request to a portal, which first names the request and tells later what became of it. It may take as long as a
/// portal takes to start and, after that, the user to decide.
class PortalRequest {
public:
    using Handler = std::function<void(PortalOutcome)>;

    /// Sends the request. The handler is called once, on the context; not any more once the request is dropped, which
    /// the handler may do.
    PortalRequest(std::shared_ptr<Bus> sessionBus, BusRequest request, Handler handler);
    PortalRequest(const PortalRequest&) = delete;
    PortalRequest& operator=(const PortalRequest&) = delete;
    ~PortalRequest() = default;

private:
    void noteSent();
    void takeReply(const BusReply& reply);
    void takeResponse(const BusSignal& response);
    void ownerChanged(const std::string& owner);
    void finish(PortalOutcome outcome);

    std::shared_ptr<Bus> _bus;
    Handler _handler;
    bool _isSent = false;
    /// The connection of the portal that has named the request, and that name; empty until then.
    std::string _portal;
    std::string _path;
    /// By the names of the requests.
    std::map<std::string, PortalOutcome> _responses;
    BusHandle _connected;
    BusHandle _response;
    BusHandle _owner;
    BusHandle _reply;
    BusHandle _alarm;
};
