#pragma once

#include "Linux/BusTalks.h"
#include "Phone/PairedDevices.h"

#include <functional>

/// The devices that BlueZ is paired with, on all its adapters: by name, and by address where names are alike. A device
/// that is paired with two adapters is one device. None while BlueZ is absent or does not answer.
class BluezDevices final : public PairedDevices {
public:
    /// `askOthers` begins the other talks that a page of devices needs, so that all are waited for together.
    BluezDevices(std::shared_ptr<BusTalks> systemBus, std::function<void()> askOthers)
        : _bus(std::move(systemBus))
        , _askOthers(std::move(askOthers))
    {
    }

    // PairedDevices
    std::vector<PairedDevice> devices() const override;

private:
    std::shared_ptr<BusTalks> _bus;
    std::function<void()> _askOthers;
};
