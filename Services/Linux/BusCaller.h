#pragma once

#include "Linux/WaitBudget.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

#include <memory>
#include <optional>
#include <vector>

/// A request, and its reply that is to come. One that was not sent has none: there is no bus, no time is left, or the
/// daemon has just failed.
struct BusQuestion {
    QDBusMessage request;
    std::optional<QDBusPendingCall> reply;
};

/// Asks daemons on a bus, and waits for them within the budget that all callers of a phone share. What cannot be
/// answered in time, or at all, is an error reply; nothing is ever raised.
class BusCaller {
public:
    BusCaller(QDBusConnection bus, std::shared_ptr<WaitBudget> budget)
        : _bus(std::move(bus))
        , _budget(std::move(budget))
    {
    }

    bool isConnected() const { return _bus.isConnected(); }
    const QDBusConnection& bus() const { return _bus; }
    WaitBudget& budget() const { return *_budget; }

    QDBusMessage call(const QDBusMessage& request) const { return answerTo(ask(request)); }
    /// The replies in the order of the requests, which are sent together and waited for together.
    std::vector<QDBusMessage> callAll(const std::vector<QDBusMessage>& requests) const;

    /// Sends the request and does not wait.
    BusQuestion ask(const QDBusMessage& request) const;
    /// Waits for the reply, no longer than it could have been waited for when it was asked.
    QDBusMessage answerTo(const BusQuestion& question) const;

private:
    QDBusConnection _bus;
    std::shared_ptr<WaitBudget> _budget;
};

/// The machine's bus, and the user's own. Not connected where there is none or it does not answer; no bus is
/// started.
QDBusConnection systemBus();
QDBusConnection sessionBus();
