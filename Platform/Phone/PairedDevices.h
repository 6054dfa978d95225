#pragma once

#include <string>
#include <vector>

struct PairedDevice {
    std::string name;
    std::string address;

    bool operator==(const PairedDevice&) const = default;
};

/// The Bluetooth devices that the phone is paired with.
class PairedDevices {
public:
    virtual ~PairedDevices() = default;
    /// In an order that does not change from call to call.
    virtual std::vector<PairedDevice> devices() const = 0;
};
