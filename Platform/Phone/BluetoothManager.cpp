#include "Phone/BluetoothManager.h"

#include "Phone/Phone.h"

NS_IMPLEMENTATION(BluetoothDevice, NS_METHOD(name), NS_METHOD(address))
NS_IMPLEMENTATION(BluetoothManager, NS_METHOD(sharedInstance), NS_METHOD(pairedDevices))

std::shared_ptr<BluetoothManager> BluetoothManager::sharedInstance()
{
    static const auto manager = std::make_shared<BluetoothManager>();
    return manager;
}

std::vector<std::shared_ptr<BluetoothDevice>> BluetoothManager::pairedDevices() const
{
    std::vector<std::shared_ptr<BluetoothDevice>> devices;
    if (const auto& service = Phone::current().pairedDevices) {
        for (const PairedDevice& device : service->devices())
            devices.push_back(std::make_shared<BluetoothDevice>(device.name, device.address));
    }
    return devices;
}
