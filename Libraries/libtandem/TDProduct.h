#pragma once

#include <string>

/// Where the product keeps its files on the phone, and the names by which its parts and other programs know it. A path
/// is composed from its pieces at each call.
namespace TDProduct {

/// The package, the service, and the first part of the names of its files.
inline constexpr const char* identifier = "com.vexil.tandem";
/// Posted inside the process when another program has changed the settings.
inline constexpr const char* settingsChangedNotification = "com.vexil.tandemSettingsChanged";
inline constexpr const char* bundleName = "TandemPreferences.bundle";
inline constexpr const char* settingsFileName = "com.vexil.tandem.plist";

/// The settings plug-in.
std::string bundlePath();
std::string settingsPath();
/// Which SIM each Bluetooth device is bound to.
std::string bindingsPath();
/// The folder of the pictures that stand for SIMs.
std::string logoDirectory();
std::string logPath();
/// What can be made again.
std::string cacheDirectory();

} // namespace TDProduct
