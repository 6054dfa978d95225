#include "libtandem/TDSettings.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSNotificationCenter.h"
#include "Foundation/NSString.h"
#include "Phone/CTXPCServiceSubscriptionContext.h"
#include "Phone/Phone.h"
#include "libtandem/TDLogFile.h"
#include "libtandem/TDProduct.h"

NS_IMPLEMENTATION(TDSettings, NS_METHOD(sharedSettings), NS_METHOD(reloadSettings), NS_METHOD(isEnabled),
    NS_METHOD(isEnabledForCalls), NS_METHOD(isDefaultActionForCalls), NS_METHOD(isEnabledForMessages),
    NS_METHOD(isEnabledForIMToText), NS_METHOD(isDefaultActionForMessages), NS_METHOD(isLoggingEnabled),
    NS_METHOD(hasBluetoothDevice), NS_METHOD(defaultSIMForBluetooth), NS_METHOD(addToBluetoothDevices_defaultSIM),
    NS_METHOD(removeFromBluetoothDevices))

namespace {

constexpr const char* damagedSuffix = ".torn";
constexpr const char* boundKey = "bound";
constexpr const char* simKey = "sim";

/// Another process may bind a device at any time, so the file is looked at whenever one is asked for.
Value bindingOf(const std::optional<std::string>& address)
{
    return address ? cachedPropertyListInFile(TDProduct::bindingsPath())[*address] : Value();
}

/// The key of a SIM as the platform spells it, whoever wrote it.
std::optional<std::string> platformSpelling(const std::optional<std::string>& sim)
{
    return sim ? std::optional(NSUUID(*sim).UUIDString()) : std::nullopt;
}

/// The bindings that are there. A file that holds none, though it holds something, is kept beside it before it is
/// written over.
Dictionary bindingsToChange()
{
    const std::string path = TDProduct::bindingsPath();
    if (auto bindings = dictionaryWithContentsOfFile(path))
        return std::move(*bindings);
    if (const auto damaged = dataWithContentsOfFile(path); damaged && !damaged->empty())
        writeToFile(*damaged, path + damagedSuffix, Atomically::Yes);
    return {};
}

void writeBinding(const std::optional<std::string>& address, bool bound, const std::optional<std::string>& sim)
{
    if (!address)
        return;
    Dictionary bindings = bindingsToChange();
    Dictionary binding { { boundKey, bound } };
    if (sim)
        binding.emplace(simKey, *sim);
    bindings.insert_or_assign(*address, std::move(binding));
    if (const auto serialized = dataWithPropertyList(bindings); serialized.data)
        writeToFile(*serialized.data, TDProduct::bindingsPath(), Atomically::Yes);
}

} // namespace

std::shared_ptr<TDSettings> TDSettings::sharedSettings()
{
    static const auto settings = [] {
        auto made = std::make_shared<TDSettings>();
        made->load();
        return made;
    }();
    return settings;
}

void TDSettings::load()
{
    _settings = dictionaryWithContentsOfFile(TDProduct::settingsPath()).value_or(Dictionary());
}

void TDSettings::reloadSettings()
{
    load();
    if (isLoggingEnabled())
        appendToLogFile(stringWithFormat("Settings were read: %@", { _settings }));
    NSNotificationCenter::defaultCenter().postNotificationName(reloadedNotification);
}

bool TDSettings::flag(const char* key, bool fallback) const
{
    const Value& stored = valueForKey(_settings, key);
    return stored.isNull() ? fallback : stored.boolValue();
}

bool TDSettings::hasBluetoothDevice(const std::optional<std::string>& address) const
{
    return bindingOf(address)[boundKey].boolValue();
}

std::optional<std::string> TDSettings::defaultSIMForBluetooth(const std::optional<std::string>& address) const
{
    return platformSpelling(bindingOf(address)[simKey].optionalString());
}

void TDSettings::addToBluetoothDevices_defaultSIM(
    const std::optional<std::string>& address, const std::optional<std::string>& sim)
{
    writeBinding(address, true, platformSpelling(sim));
}

void TDSettings::removeFromBluetoothDevices(const std::optional<std::string>& address)
{
    writeBinding(address, false, defaultSIMForBluetooth(address));
}
