#pragma once

#include "Linux/WaitBudget.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

/// A request, and its reply that is to come. One that was not sent has none: there is no bus, no time is left, or the
/// daemon has just failed.
struct BusQuestion {
    QDBusMessage request;
    std::optional<QDBusPendingCall> reply;
};

/// A bus that is connected to when it is first used, on whatever thread that is. One that is not there then, or goes
/// away, is tried again in a later turn of the host.
class BusOnDemand {
public:
    using Connect = std::function<QDBusConnection()>;

    explicit BusOnDemand(Connect connect)
        : _connect(std::move(connect))
    {
    }

    QDBusConnection connection(unsigned turn);

private:
    Connect _connect;
    std::mutex _mutex;
    std::optional<QDBusConnection> _connection;
    unsigned _triedIn = 0;
};

/// Asks daemons on a bus, and waits for them within the budget that all callers of a phone share. What cannot be
/// answered in time, or at all, is an error reply; nothing is ever raised.
class BusCaller {
public:
    /// `connect` is called when the bus is first used.
    BusCaller(BusOnDemand::Connect connect, std::shared_ptr<WaitBudget> budget)
        : _bus(std::make_shared<BusOnDemand>(std::move(connect)))
        , _budget(std::move(budget))
    {
    }
    BusCaller(const QDBusConnection& bus, std::shared_ptr<WaitBudget> budget)
        : BusCaller([bus] { return bus; }, std::move(budget))
    {
    }

    bool isConnected() const { return bus().isConnected(); }
    /// To be asked for anew in each turn. Connecting is paid for like an answer.
    QDBusConnection bus() const;
    const std::shared_ptr<WaitBudget>& budget() const { return _budget; }

    QDBusMessage call(const QDBusMessage& request) const { return answerTo(ask(request)); }
    /// The replies in the order of the requests, which are sent together and waited for together.
    std::vector<QDBusMessage> callAll(const std::vector<QDBusMessage>& requests) const;

    /// Sends the request and does not wait.
    BusQuestion ask(const QDBusMessage& request) const;
    /// Waits for the reply, no longer than it could have been waited for when it was asked.
    QDBusMessage answerTo(const BusQuestion& question) const;

private:
    std::shared_ptr<BusOnDemand> _bus;
    std::shared_ptr<WaitBudget> _budget;
};

/// The machine's bus, and the user's own. Not connected where there is none or it does not answer; no bus is
/// started.
QDBusConnection systemBus();
QDBusConnection sessionBus();
