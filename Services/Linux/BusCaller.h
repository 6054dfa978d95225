#pragma once

#include "Linux/WaitBudget.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <memory>
#include <vector>

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

    QDBusMessage call(const QDBusMessage& request) const { return callAll({ request }).front(); }
    /// The replies in the order of the requests, which are sent together and waited for together.
    std::vector<QDBusMessage> callAll(const std::vector<QDBusMessage>& requests) const;

private:
    QDBusConnection _bus;
    std::shared_ptr<WaitBudget> _budget;
};

/// The machine's bus, and the user's own. Not connected where there is none or it does not answer; no bus is
/// started.
QDBusConnection systemBus();
QDBusConnection sessionBus();
