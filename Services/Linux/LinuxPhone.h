#pragma once

#include "Linux/Bus/FirstWait.h"
#include "Linux/Desktop/BusNotifications.h"
#include "Linux/Desktop/DesktopRequests.h"
#include "Linux/Desktop/PortalAppearance.h"
#include "Phone/Phone.h"

#include <functional>
#include <memory>
#include <string>

class BluezDevices;
class Bus;
class LinuxSubscriptions;

/// The machine that the program runs on, as a phone: BlueZ, ModemManager or oFono, the user's bus, the desktop's
/// portals, desktop entries and icon themes, and the machine's log.
///
/// Each of them may be absent, and none keeps a turn waiting for more than half a second.
class LinuxPhone {
public:
    /// Where a path of the phone lies on this machine.
    using HostPath = std::function<std::string(const std::string&)>;

    explicit LinuxPhone(HostPath hostPath);
    LinuxPhone(const LinuxPhone&) = delete;
    LinuxPhone& operator=(const LinuxPhone&) = delete;
    ~LinuxPhone();

    /// Without property lists, files, images and text measure, which the caller adds.
    Phone phone() const { return _phone; }

    /// Called in a turn or a `takeIn` after something that the phone's appearance tells has changed.
    void setAppearanceObserver(std::function<void()> observer) { _appearance->setObserver(std::move(observer)); }

    /// Called in a turn or a `takeIn` when devices or SIMs are others than those that were last given.
    void setDataObserver(std::function<void()> observer);
    /// Whether devices or SIMs have been asked for since this was last called.
    bool wereDataGiven();

    /// To be called before the pages are given an event: takes in what has come meanwhile, and connects again to buses
    /// that have gone.
    void beginTurn();
    /// To be called after it. Waits for the devices or SIMs that were asked for the first time; they are given when
    /// they are asked for again.
    void endTurn();
    /// Handles what comes from the buses until there is something to read from the descriptor, or it has ended. The
    /// pages learn of it in the next turn.
    void waitUntilReadable(int descriptor) { _context->waitUntilReadable(descriptor); }
    /// For an event loop that is to wait for the buses too.
    BusContext& busContext() { return *_context; }

private:
    void waitForDaemons();

    std::shared_ptr<BusContext> _context = std::make_shared<BusContext>();
    std::shared_ptr<Bus> _sessionBus;
    std::shared_ptr<Bus> _systemBus;
    std::shared_ptr<FirstWait> _firstWait = std::make_shared<FirstWait>(_context);
    std::shared_ptr<BluezDevices> _devices;
    std::shared_ptr<LinuxSubscriptions> _sims;
    std::shared_ptr<BusNotifications> _notifications;
    std::shared_ptr<DesktopRequests> _requests;
    std::shared_ptr<PortalAppearance> _appearance;
    Phone _phone;
};
