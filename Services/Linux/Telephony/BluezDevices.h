#pragma once

#include "Linux/Bus/ObjectCache.h"
#include "Phone/PairedDevices.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

/// The devices that BlueZ is paired with, on all its adapters: by name, and by address where names are alike. A device
/// that is paired with two adapters is one device. None while BlueZ is absent or has not answered.
class BluezDevices final : public PairedDevices {
public:
    BluezDevices(std::shared_ptr<Bus> systemBus, std::shared_ptr<FirstWait> group);

    /// Called in a `takeIn` when the devices are others than those that were last given.
    void setObserver(std::function<void()> observer) { _observer = std::move(observer); }
    /// Whether the devices have been asked for since this was last called.
    bool wereGiven() { return std::exchange(_wereGiven, false); }
    /// Whether somebody has asked for the devices, and they may still come in time.
    bool isAwaited() const { return _given && _state->isAwaited(); }

    // PairedDevices
    std::vector<PairedDevice> devices() const override;

private:
    void compare() const;

    std::unique_ptr<ObjectCache> _state;
    std::function<void()> _observer;
    mutable bool _wereGiven = false;
    mutable std::optional<std::vector<PairedDevice>> _given;
};
