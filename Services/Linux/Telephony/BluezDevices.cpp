#include "Linux/Telephony/BluezDevices.h"

#include "Linux/Telephony/Texts.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <tuple>

namespace {

constexpr const char* bluez = "org.bluez";
constexpr const char* bluezRoot = "/";
constexpr const char* deviceInterface = "org.bluez.Device1";
constexpr std::string_view hexadecimal = "0123456789ABCDEFabcdef";
constexpr std::size_t addressLength = 17;
constexpr std::size_t addressPiece = 3;

bool isHexadecimal(char character)
{
    return hexadecimal.find(character) != std::string_view::npos;
}

/// The address names the device's rows and its binding, so one that is none makes no device.
bool isAddress(const std::string& text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isColonsPlace = i % addressPiece == addressPiece - 1;
        if (isColonsPlace ? text[i] != ':' : !isHexadecimal(text[i]))
            return false;
    }
    return text.size() == addressLength;
}

std::string nameOf(const BusProperties& device, const std::string& address)
{
    for (const char* name : { "Name", "Alias" }) {
        const std::string text = plainLine(textOf(device, name));
        if (!text.empty())
            return text;
    }
    return address;
}

auto place(const PairedDevice& device)
{
    return std::tuple(caseFolded(device.name), device.name, device.address);
}

std::vector<PairedDevice> devicesIn(const BusObjects& objects)
{
    std::map<std::string, PairedDevice> byAddress;
    for (const auto& [path, interfaces] : objects) {
        const auto device = interfaces.find(deviceInterface);
        if (device == interfaces.end() || !isTrue(device->second, "Paired"))
            continue;
        const std::string address = textOf(device->second, "Address");
        if (isAddress(address))
            byAddress.try_emplace(address, PairedDevice { nameOf(device->second, address), address });
    }
    std::vector<PairedDevice> devices;
    for (auto& [address, device] : byAddress)
        devices.push_back(std::move(device));
    std::ranges::sort(devices, {}, place);
    return devices;
}

} // namespace

BluezDevices::BluezDevices(std::shared_ptr<Bus> systemBus, std::shared_ptr<FirstWait> group)
    : _state(std::make_unique<ObjectCache>(std::move(systemBus), bluez, bluezRoot, std::move(group)))
{
    _state->setObserver([this] { compare(); });
}

void BluezDevices::compare() const
{
    if (_given && _observer && *_given != devicesIn(_state->objects()))
        _observer();
}

std::vector<PairedDevice> BluezDevices::devices() const
{
    _wereGiven = true;
    _given = devicesIn(_state->objects());
    return *_given;
}
