#include "Linux/Telephony/BluezDevices.h"

#include "Linux/BusValues.h"

#include <QRegularExpression>

#include <map>
#include <tuple>
#include <utility>

namespace {

constexpr const char* bluez = "org.bluez";
constexpr const char* bluezRoot = "/";
constexpr const char* objectManager = "org.freedesktop.DBus.ObjectManager";
constexpr const char* getManagedObjects = "GetManagedObjects";
constexpr const char* deviceInterface = "org.bluez.Device1";
constexpr const char* addressPattern = "^[0-9A-Fa-f]{2}(:[0-9A-Fa-f]{2}){5}\\z";

/// The address names the device's rows and its binding, so one that is none makes no device.
bool isAddress(const QString& text)
{
    static const QRegularExpression pattern { QLatin1String(addressPattern) };
    return pattern.match(text).hasMatch();
}

QString nameOf(const QVariantMap& device, const QString& address)
{
    for (const char* name : { "Name", "Alias" }) {
        const QString text = plainLine(textOf(device, name));
        if (!text.isEmpty())
            return text;
    }
    return address;
}

auto place(const PairedDevice& device)
{
    return std::tuple(QString::fromStdString(device.name).toCaseFolded(), device.name, device.address);
}

std::vector<PairedDevice> devicesOn(const BusCaller& systemBus)
{
    const auto objects = managedObjectsOf(systemBus.call(QDBusMessage::createMethodCall(QLatin1String(bluez),
        QLatin1String(bluezRoot), QLatin1String(objectManager), QLatin1String(getManagedObjects))));
    if (!objects)
        return {};
    std::map<QString, PairedDevice> byAddress;
    for (const BusInterfaces& interfaces : *objects) {
        const QVariantMap device = interfaces.value(QLatin1String(deviceInterface));
        const QString address = textOf(device, "Address");
        if (isTrue(device, "Paired") && isAddress(address))
            byAddress.try_emplace(
                address, PairedDevice { nameOf(device, address).toStdString(), address.toStdString() });
    }
    std::vector<PairedDevice> devices;
    for (auto& [address, device] : byAddress)
        devices.push_back(std::move(device));
    std::sort(devices.begin(), devices.end(),
        [](const PairedDevice& left, const PairedDevice& right) { return place(left) < place(right); });
    return devices;
}

} // namespace

void BluezDevices::askAhead()
{
    if (!_known.isKnown() && std::exchange(_isNeeded, false))
        _ahead = begun();
}

BluezDevices::Talk BluezDevices::begun() const
{
    auto ahead = std::exchange(_ahead, std::nullopt);
    return ahead && ahead->isOfThisTurn() ? std::move(*ahead) : _bus->begin(bluez, devicesOn);
}

std::vector<PairedDevice> BluezDevices::devices() const
{
    _isNeeded = true;
    return _known.get([this] {
        Talk talk = begun();
        _askOthers();
        return talk.result();
    });
}
