#pragma once

#include "Linux/Bus/Bus.h"
#include "Phone/DarwinNotifications.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Darwin notifications as signals on the user's bus: each process that asked for a name gets every notification of
/// that name, the poster too, in the order of their posting. What is posted while the bus is being opened is kept;
/// without a bus nothing is posted and nothing comes. Handlers are called when the context delivers its news.
///
/// The signal is com.vexil.DarwinNotifications.Posted(s name), from the object /com/vexil/DarwinNotifications. A
/// connection that posts owns a name below com.vexil.Tandem.Notifications.
class BusNotifications final : public DarwinNotifications {
public:
    explicit BusNotifications(std::shared_ptr<Bus> sessionBus);

    /// The handler is called for every notification, whatever its name.
    void addObserverOfAll(Handler handler) { observe({}, std::move(handler)); }
    /// Waits until all that was posted has left the process, so that it may end. Does not wait for a bus that hangs.
    void flush();

    // DarwinNotifications
    void post(const std::string& name) override;
    void addObserver(const std::string& name, Handler handler) override;

private:
    using SharedHandler = std::shared_ptr<const Handler>;

    void claimName();
    /// Of the name that the bus selects; empty for all names.
    void observe(const std::string& selected, Handler handler);
    void receive(const SharedHandler& handler, const BusSignal& heard);
    void deliver();

    std::shared_ptr<Bus> _bus;
    bool _isPoster = false;
    bool _isFlushed = true;
    BusHandle _connected;
    BusHandle _claim;
    std::vector<BusHandle> _subscriptions;
    /// What has come and is to be delivered, in order.
    std::vector<std::pair<SharedHandler, std::string>> _received;
    BusHandle _news;
};
