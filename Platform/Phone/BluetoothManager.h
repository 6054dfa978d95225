#pragma once

#include "Runtime/NSObject.h"

#include <memory>
#include <string>
#include <vector>

/// A device that the phone is paired with.
class BluetoothDevice final : public NSObject {
    NS_CLASS(BluetoothDevice, NSObject)
public:
    BluetoothDevice() = default;
    BluetoothDevice(std::string name, std::string address)
        : _name(std::move(name))
        , _address(std::move(address))
    {
    }

    const std::string& name() const { return _name; }
    const std::string& address() const { return _address; }

private:
    std::string _name;
    std::string _address;
};

/// The paired devices, as the phone's service knows them at each call.
class BluetoothManager final : public NSObject {
    NS_CLASS(BluetoothManager, NSObject)
public:
    static std::shared_ptr<BluetoothManager> sharedInstance();

    /// In the service's order; none without a service.
    std::vector<std::shared_ptr<BluetoothDevice>> pairedDevices() const;
};
