#pragma once

#include "Linux/BusCaller.h"
#include "Phone/PairedDevices.h"

/// The devices that BlueZ is paired with, on all its adapters: by name, and by address where names are alike. A device
/// that is paired with two adapters is one device. None while BlueZ is absent or does not answer.
class BluezDevices final : public PairedDevices {
public:
    explicit BluezDevices(BusCaller systemBus)
        : _bus(std::move(systemBus))
    {
    }

    // PairedDevices
    std::vector<PairedDevice> devices() const override;

private:
    BusCaller _bus;
};
