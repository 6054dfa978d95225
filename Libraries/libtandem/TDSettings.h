#pragma once

#include "Runtime/NSObject.h"

#include <memory>
#include <optional>
#include <string>

/// The product's settings as its other parts see them: read from the settings file by `reloadSettings`, and unchanged
/// until it is called again. What the file does not hold has its default, the same that the pages show.
///
/// The Bluetooth bindings live in a file of their own, written atomically with every change.
class TDSettings final : public NSObject {
    NS_CLASS(TDSettings, NSObject)
public:
    static std::shared_ptr<TDSettings> sharedSettings();
    /// Posted inside the process after every `reloadSettings`.
    static constexpr const char* reloadedNotification = "com.vexil.tandem.settingsReloaded";

    void reloadSettings();

    bool isEnabled() const { return flag("TandemEnabled", true); }
    bool isEnabledForCalls() const { return flag("TandemEnabledCalls", true); }
    /// Whether the SIM choice is offered when a call is placed.
    bool isDefaultActionForCalls() const { return flag("ShowSimSlectionForCalls", true); }
    bool isEnabledForMessages() const { return flag("TandemEnabledMessages", true); }
    bool isEnabledForIMToText() const { return flag("TandemEnabledIMToText", false); }
    /// Whether the SIM choice is offered when a message is sent.
    bool isDefaultActionForMessages() const { return flag("ShowSimSlectionForMessages", true); }
    bool isLoggingEnabled() const { return flag("TandemLoggingEnabled", false); }

    // The bindings. An absent address names no device and is never bound.
    /// The device is bound, to a SIM or to none.
    bool hasBluetoothDevice(const std::optional<std::string>& address) const;
    /// The UUID text, in upper case, of the SIM that the device is bound to, or was when it was last switched off;
    /// absent when there was none.
    std::optional<std::string> defaultSIMForBluetooth(const std::optional<std::string>& address) const;
    /// Binds the device, in place of an earlier binding.
    void addToBluetoothDevices_defaultSIM(
        const std::optional<std::string>& address, const std::optional<std::string>& sim);
    /// Unbinds the device; its SIM is remembered for the next time.
    void removeFromBluetoothDevices(const std::optional<std::string>& address);

private:
    void load();
    bool flag(const char* key, bool fallback) const;

    Dictionary _settings;
};
