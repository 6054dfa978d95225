#include "libtandem/TDSettings.h"

#include "Foundation/NSFileManager.h"
#include "Foundation/NSNotificationCenter.h"
#include "Foundation/NSString.h"
#include "Phone/Phone.h"
#include "libtandem/TDLogFile.h"

NS_IMPLEMENTATION(TDSettings, NS_METHOD(reloadSettings))

namespace {

constexpr const char* settingsFile = "/var/mobile/Library/Preferences/com.vexil.tandem.plist";
constexpr const char* bindingsFile = "/var/mobile/Library/Preferences/com.vexil.tandem.bluetooth.plist";
constexpr const char* damagedSuffix = ".torn";
constexpr const char* boundKey = "bound";
constexpr const char* simKey = "sim";

/// Another process may bind a device at any time, so the file is looked at whenever one is asked for.
Value bindingOf(const std::string& address)
{
    return cachedPropertyListInFile(bindingsFile)[address];
}

/// The bindings that are there. A file that holds none, though it holds something, is kept beside it before it is
/// written over.
Dictionary bindingsToChange()
{
    if (auto bindings = dictionaryWithContentsOfFile(bindingsFile))
        return std::move(*bindings);
    if (const auto damaged = dataWithContentsOfFile(bindingsFile); damaged && !damaged->empty())
        writeToFile(*damaged, std::string(bindingsFile) + damagedSuffix, Atomically::Yes);
    return {};
}

void writeBinding(const std::string& address, bool bound, const std::optional<std::string>& sim)
{
    Dictionary bindings = bindingsToChange();
    Dictionary binding { { boundKey, bound } };
    if (sim)
        binding.emplace(simKey, *sim);
    bindings.insert_or_assign(address, std::move(binding));
    if (const auto serialized = dataWithPropertyList(bindings); serialized.data)
        writeToFile(*serialized.data, bindingsFile, Atomically::Yes);
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
    _settings = dictionaryWithContentsOfFile(settingsFile).value_or(Dictionary());
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

bool TDSettings::hasBluetoothDevice(const std::string& address) const
{
    return bindingOf(address)[boundKey].boolValue();
}

std::optional<std::string> TDSettings::defaultSIMForBluetooth(const std::string& address) const
{
    return bindingOf(address)[simKey].optionalString();
}

void TDSettings::addToBluetoothDevices_defaultSIM(const std::string& address, const std::optional<std::string>& sim)
{
    writeBinding(address, true, sim);
}

void TDSettings::removeFromBluetoothDevices(const std::string& address)
{
    writeBinding(address, false, defaultSIMForBluetooth(address));
}
